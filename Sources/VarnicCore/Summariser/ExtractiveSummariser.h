#pragma once

#include "VarnicCore/Models/Call.h"
#include "VarnicCore/Models/Date.h"
#include "VarnicCore/Models/Region.h"
#include "VarnicCore/Models/Summariser.h"
#include "VarnicCore/Text/NounTagger.h"

#include <cstddef>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace varnic {

/// Makes a digest of a call on this computer, from the call's own sentences. It never fails. To-dos and the email are
/// in English, and only calls in English have them; of others the digest holds sentences that were chosen by what can
/// be counted.
class ExtractiveSummariser : public Summariser {
public:
    [[nodiscard]] std::string displayName() const override;

    [[nodiscard]] bool isLocal() const override { return true; }

    /// As `makeDigest` for this user, now. It takes a moment only and does not look at `stop`.
    [[nodiscard]] CallDigest digest(const std::vector<Segment>& segments, const DigestContext& context,
                                    std::stop_token stop) const override;

    /// The digest, made at `now`.
    static CallDigest makeDigest(const std::vector<Segment>& segments, const DigestContext& context,
                                 const Region& region = Region::user(), Date now = currentDate(),
                                 const NounTagger& tagger = englishNounTagger());

    /// The sentences that tell most about the call, tidied, in spoken order, without what the actions say already. At
    /// most `limit`; without one a third of all sentences, up to 7. `language` is what is spoken, a tag.
    static std::vector<std::string> keySentences(const std::vector<Segment>& segments,
                                                 const std::vector<ActionItem>& excluding,
                                                 std::optional<std::size_t> limit = std::nullopt,
                                                 std::string_view language = "en");

    /// The text as one finished sentence: without lead-ins, a capital in front, an end mark at the end.
    static std::string tidy(std::string_view text);

    /// The same of a language, a tag, whose lead-ins aren't known, by the ways of its script.
    static std::string tidy(std::string_view text, std::string_view language);
};

} // namespace varnic
