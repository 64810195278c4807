#pragma once

#include "VarnicCore/Audio/VoiceActivity.h"
#include "VarnicCore/Transcript/Utterances.h"

#include <string_view>
#include <vector>

/// When words were said, for engines that do not tell. Pure.
namespace varnic::WordTimes {

/// The words of a text over the voiced runs in which they were said, each in one run and by its length. Where the
/// runs' pauses fall between words is chosen by the lengths on both sides, punctuation before a pause preferred.
/// Nothing without runs.
std::vector<TimedWord> spread(std::string_view text, const std::vector<VoiceActivity::Range>& voiced);

} // namespace varnic::WordTimes
