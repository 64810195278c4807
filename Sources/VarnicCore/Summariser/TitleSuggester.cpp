#include "VarnicCore/Summariser/TitleSuggester.h"

#include "VarnicCore/Text/Language.h"
#include "VarnicCore/Text/TextKit.h"
#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <unicode/uchar.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <ranges>
#include <unordered_map>

namespace varnic::TitleSuggester {

namespace {

constexpr std::size_t nounsOfTitle = 2;

/// Nouns of any conversation, which say nothing about this one.
const TextKit::WordSet& genericNouns() {
    static const TextKit::WordSet nouns{
        "guys",     "people",   "minute",    "minutes",  "second",    "seconds", "morning", "afternoon", "evening",
        "day",      "days",     "weeks",     "today",    "tomorrow",  "friday",  "monday",  "tuesday",   "wednesday",
        "thursday", "saturday", "sunday",    "question", "questions", "idea",    "point",   "part",      "side",
        "screen",   "meeting",  "everybody", "everyone", "someone",   "anyone",  "folks",   "team",      "end",
        "start",    "sense",    "case",      "number",   "hour",      "hours",   "month",   "year",      "update",
        "chat",     "call",     "calls",     "note",     "notes",     "email",   "thanks",  "deal",      "yeah",
    };
    return nouns;
}

/// A letter, the accent on one, or a hyphen.
bool isPartOfName(char32_t c) {
    return Unicode::isLetter(c) || c == U'-' || (U_GET_GC_MASK(static_cast<UChar32>(c)) & U_GC_M_MASK) != 0;
}

bool isTelling(const std::string& noun) {
    return Unicode::characterCount(noun) >= 4 && !TextKit::stopWords().contains(noun) &&
           !genericNouns().contains(noun) && !Unicode::any(noun, [](char32_t c) { return !isPartOfName(c); });
}

std::string joinedText(const std::vector<Segment>& segments) {
    return fmt::format("{}", fmt::join(segments | std::views::transform(&Segment::text), " "));
}

struct Noun {
    std::string word;
    std::size_t count = 0;
};

/// The telling nouns in the order of their first mention.
std::vector<Noun> countedNouns(const std::vector<TaggedWord>& words) {
    std::vector<Noun> nouns;
    std::unordered_map<std::string, std::size_t> places;
    for (const auto& [text, isNoun] : words) {
        if (!isNoun) {
            continue;
        }
        const std::string word = Unicode::lowerCased(text);
        const auto [place, isNew] = places.try_emplace(word, nouns.size());
        if (isNew) {
            nouns.push_back({word, 0});
        }
        ++nouns[place->second].count;
    }
    std::erase_if(nouns, [](const Noun& noun) { return noun.count < 2 || !isTelling(noun.word); });
    return nouns;
}

std::vector<Noun> topNouns(const std::vector<TaggedWord>& words) {
    std::vector<Noun> nouns = countedNouns(words);
    std::ranges::stable_sort(nouns, std::ranges::greater{}, &Noun::count);
    nouns.resize(std::min(nouns.size(), nounsOfTitle));
    return nouns;
}

/// A title that needs no words of the call.
std::string plainTitle(Date date, std::string_view themName, std::string_view source, const Region& region) {
    constexpr std::string_view anyCall = "Call";
    const std::string_view name = Unicode::trimBlanks(themName);
    if (!name.empty()) {
        return fmt::format("Call with {}", name);
    }
    const std::string kind =
        source.empty() || source == anyCall ? std::string(anyCall) : fmt::format("{} call", source);
    return fmt::format("{} on {}", kind, region.format(date, "EEE d MMM"));
}

} // namespace

std::string title(const std::vector<Segment>& segments, Date date, std::string_view themName, const Region& region,
                  const NounTagger& tagger) {
    const std::vector<Noun> top = topNouns(tagger(joinedText(segments)));
    if (top.empty() || (top.size() < nounsOfTitle && !Unicode::trimBlanks(themName).empty())) {
        return plainTitle(date, themName, {}, region);
    }
    return TextKit::capitalisedFirst(fmt::format("{}", fmt::join(top | std::views::transform(&Noun::word), " & ")));
}

std::string title(const std::vector<Segment>& segments, const DigestContext& context, const Region& region,
                  const NounTagger& tagger) {
    return Language::isEnglish(context.language)
               ? title(segments, context.callDate, context.themName, region, tagger)
               : plainTitle(context.callDate, context.themName, context.source, region);
}

} // namespace varnic::TitleSuggester
