#pragma once

#include "VarnicCore/Models/Date.h"
#include "VarnicCore/Models/Region.h"
#include "VarnicCore/Models/Segment.h"
#include "VarnicCore/Models/Summariser.h"
#include "VarnicCore/Text/NounTagger.h"

#include <string>
#include <string_view>
#include <vector>

/// Names a call after what was talked about, in English. Any thread.
namespace varnic::TitleSuggester {

/// The two nouns that came up most ("Pricing & launch"), else the other party's name or the date; never empty. The date
/// is written in the region's zone and language.
std::string title(const std::vector<Segment>& segments, Date date, std::string_view themName,
                  const Region& region = Region::user(), const NounTagger& tagger = englishNounTagger());

/// The title of a call in whatever language: as above for English, and without its nouns for others, by the other party
/// or by the source and the date.
std::string title(const std::vector<Segment>& segments, const DigestContext& context,
                  const Region& region = Region::user(), const NounTagger& tagger = englishNounTagger());

} // namespace varnic::TitleSuggester
