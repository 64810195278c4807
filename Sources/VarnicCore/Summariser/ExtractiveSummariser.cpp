#include "VarnicCore/Summariser/ExtractiveSummariser.h"

#include "VarnicCore/Summariser/ActionFinder.h"
#include "VarnicCore/Summariser/EmailDrafter.h"
#include "VarnicCore/Summariser/TitleSuggester.h"
#include "VarnicCore/Text/Language.h"
#include "VarnicCore/Text/Pattern.h"
#include "VarnicCore/Text/TextKit.h"
#include "VarnicCore/Text/Unicode.h"
#include "VarnicCore/Text/WordProfile.h"

#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/uscript.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace varnic {

namespace {

/// What hints at a sentence that matters, as it stands in folded text.
constexpr std::array<std::string_view, 30> cues{
    "decided", "agreed",    "decision",  "important",   "main",    "key",     "problem", "issue",    "goal",
    "plan",    "budget",    "deadline",  "launch",      "price",   "pricing", "risk",    "priority", "conclusion",
    "summary", "next step", "the point", "bottom line", "blocker", "concern", "because", "so that",  "instead",
    "%",       "$",         "₹"};

/// What is said at the beginning and the end of calls, as it stands in folded text.
constexpr std::array<std::string_view, 25> greetings{"can you hear me",
                                                     "can you see my screen",
                                                     "you're on mute",
                                                     "you are on mute",
                                                     "how are you",
                                                     "how's it going",
                                                     "talk soon",
                                                     "have a good",
                                                     "bye",
                                                     "nice to meet",
                                                     "good to see",
                                                     "thanks for joining",
                                                     "let me share",
                                                     "thanks for making time",
                                                     "thank you for making time",
                                                     "thanks for having",
                                                     "thanks for taking",
                                                     "good morning",
                                                     "good afternoon",
                                                     "one sec",
                                                     "one second",
                                                     "hold on",
                                                     "sorry",
                                                     "is that okay",
                                                     "sounds good"};

bool containsAny(std::string_view text, std::span<const std::string_view> phrases) {
    return std::ranges::any_of(phrases, [&](std::string_view phrase) { return text.contains(phrase); });
}

/// What a number is told by where words aren't known.
bool namesAnAmount(std::string_view text) {
    return text.contains('%') ||
           Unicode::any(text, [](char32_t c) { return u_charType(static_cast<UChar32>(c)) == U_CURRENCY_SYMBOL; });
}

bool asks(std::string_view text) {
    constexpr std::array<std::string_view, 3> marks{"?", "？", "؟"};
    return std::ranges::any_of(marks, [text](std::string_view mark) { return text.ends_with(mark); });
}

struct Candidate {
    /// The sentence as it was spoken, trimmed.
    std::string text;
    /// Its place among all sentences of the call.
    std::size_t order = 0;
    double score = 0;
    /// The number of its words that hold a letter or a number.
    std::size_t wordCount = 0;
    /// Its content words, duplicates kept.
    std::vector<std::string> content;
};

/// The number of sentences in which a word occurs, by word.
using Frequencies = std::unordered_map<std::string_view, double>;

std::vector<Candidate> candidatesOf(const std::vector<Segment>& segments, std::string_view language) {
    const auto counts = [](const std::string& word) {
        return Unicode::any(word, [](char32_t c) { return Unicode::isLetter(c) || Unicode::isNumber(c); });
    };
    const auto carriesMeaning = Language::isEnglish(language) ? TextKit::isContentWord : TextKit::isLongWord;
    std::vector<Candidate> candidates;
    for (const Segment& segment : segments) {
        for (auto& sentence : TextKit::sentences(segment.text, language)) {
            std::vector<std::string> words = TextKit::words(sentence, language);
            const auto count = static_cast<std::size_t>(std::ranges::count_if(words, counts));
            std::erase_if(words, [&](const std::string& word) { return !carriesMeaning(word); });
            candidates.push_back({std::move(sentence), candidates.size(), 0, count, std::move(words)});
        }
    }
    return candidates;
}

std::unordered_set<std::string_view> distinct(const std::vector<std::string>& words) {
    return {words.begin(), words.end()};
}

Frequencies frequenciesIn(const std::vector<Candidate>& candidates) {
    Frequencies frequencies;
    for (const Candidate& candidate : candidates) {
        for (const auto word : distinct(candidate.content)) {
            frequencies[word] += 1;
        }
    }
    return frequencies;
}

double highest(const Frequencies& frequencies) {
    double top = 1; // the least that an entry can be
    for (const auto& [word, frequency] : frequencies) {
        top = std::max(top, frequency);
    }
    return top;
}

bool namesANumber(std::string_view text, std::string_view folded) {
    static const Pattern numberWord(
        "\\b(hundred|thousand|million|percent|dollars?|rupees?|euros?|pounds?|lakh|crore)\\b");
    return Unicode::any(text, Unicode::isNumber) || numberWord.isIn(Unicode::utf16(folded));
}

/// What speaks for a sentence or against it, besides the weight of its words.
struct Hints {
    bool matters = false;
    bool holdsNumber = false;
    bool asks = false;
};

/// What the words of English tell about a sentence; nothing for a greeting.
std::optional<Hints> wordHints(const Candidate& candidate) {
    const std::string folded = TextKit::fold(candidate.text);
    if (candidate.wordCount < 14 && containsAny(folded, greetings)) {
        return std::nullopt;
    }
    return Hints{.matters = containsAny(folded, cues),
                 .holdsNumber = namesANumber(candidate.text, folded),
                 .asks = candidate.text.ends_with('?')};
}

/// What the signs in a sentence tell in any language.
Hints signHints(const Candidate& candidate) {
    return {.matters = namesAnAmount(candidate.text),
            .holdsNumber = Unicode::any(candidate.text, Unicode::isNumber),
            .asks = asks(candidate.text)};
}

double scoreOf(const Candidate& candidate, const Frequencies& frequencies, double top, bool isEnglish) {
    const std::size_t n = candidate.wordCount;
    if (n < 5 || candidate.content.empty()) {
        return -1;
    }
    const std::optional<Hints> hints = isEnglish ? wordHints(candidate) : signHints(candidate);
    if (!hints) {
        return -1;
    }
    double score = 0;
    for (const auto& word : candidate.content) {
        score += frequencies.at(word) / top;
    }
    score /= std::sqrt(static_cast<double>(n));
    score += 0.05 * static_cast<double>(distinct(candidate.content).size());
    // One after the other, since the order of additions decides between scores that are equal but for rounding.
    score += hints->matters ? 0.45 : 0;
    score += hints->holdsNumber ? 0.2 : 0;
    score -= hints->asks ? 0.25 : 0;
    score -= n > 45 ? 0.3 : 0;
    return score;
}

/// Takes out the words that stand in so many sentences that they tell nothing about one: what a list of stop words does
/// for a language that has one here.
void dropCommonWords(std::vector<Candidate>& candidates) {
    constexpr double fewSentences = 4;
    constexpr double share = 0.1;
    const double most = std::max(fewSentences, share * static_cast<double>(candidates.size()));
    std::unordered_set<std::string> common;
    for (const auto& [word, count] : frequenciesIn(candidates)) {
        if (count > most) {
            common.emplace(word);
        }
    }
    for (Candidate& candidate : candidates) {
        std::erase_if(candidate.content, [&common](const std::string& word) { return common.contains(word); });
    }
}

void rank(std::vector<Candidate>& candidates, bool isEnglish) {
    if (!isEnglish) {
        dropCommonWords(candidates);
    }
    const Frequencies frequencies = frequenciesIn(candidates);
    const double top = highest(frequencies);
    for (Candidate& candidate : candidates) {
        candidate.score = scoreOf(candidate, frequencies, top, isEnglish);
    }
    std::ranges::stable_sort(candidates, std::ranges::greater{}, &Candidate::score);
}

std::size_t usualLimit(std::size_t candidates) {
    return std::min<std::size_t>(7, std::max((candidates + 2) / 3, std::min<std::size_t>(candidates, 4)));
}

/// Whether a sentence is so short that the to-do in it is all that it says.
bool isAction(const std::string& sentence) {
    if (TextKit::wordCount(sentence) >= 16) {
        return false;
    }
    return std::ranges::any_of(ActionFinder::clauses(sentence), [](const std::string& clause) {
        return ActionFinder::action(clause, Speaker::you, std::nullopt).has_value();
    });
}

bool isLikeAny(const WordProfile& words, const std::vector<WordProfile>& others, double bound) {
    return std::ranges::any_of(others, [&](const WordProfile& other) { return words.isMoreSimilar(other, bound); });
}

/// The best of the ranked candidates that say something of their own.
std::vector<const Candidate*> choose(const std::vector<Candidate>& ranked, const std::vector<ActionItem>& excluding,
                                     std::size_t limit, std::string_view language) {
    const bool isEnglish = Language::isEnglish(language);
    std::vector<WordProfile> excluded;
    excluded.reserve(excluding.size());
    for (const ActionItem& action : excluding) {
        excluded.emplace_back(action.text);
    }
    std::vector<WordProfile> said;
    std::vector<const Candidate*> chosen;
    for (const Candidate& candidate : ranked) {
        if (candidate.score <= 0 || chosen.size() >= limit) {
            break;
        }
        WordProfile words(candidate.text, language);
        if (isLikeAny(words, said, 0.55) || isLikeAny(words, excluded, 0.6) ||
            (isEnglish && isAction(candidate.text))) {
            continue;
        }
        said.push_back(std::move(words));
        chosen.push_back(&candidate);
    }
    return chosen;
}

/// The mark that a sentence lacks at its end, by the script it ends in.
std::string_view missingEnd(const icu::UnicodeString& sentence) {
    const UChar32 last = sentence.char32At(sentence.length() - 1);
    if (u_hasBinaryProperty(last, UCHAR_S_TERM) != 0 || last == U'…' || u_charType(last) == U_END_PUNCTUATION ||
        u_charType(last) == U_FINAL_PUNCTUATION) {
        return "";
    }
    const auto isIn = [last](UScriptCode script) { return uscript_hasScript(last, script) != 0; };
    if (isIn(USCRIPT_HAN) || isIn(USCRIPT_HIRAGANA) || isIn(USCRIPT_KATAKANA)) {
        return "。";
    }
    UErrorCode status = U_ZERO_ERROR;
    switch (uscript_getScript(last, &status)) {
    case USCRIPT_DEVANAGARI:
    case USCRIPT_BENGALI:
        return "।";
    case USCRIPT_ARMENIAN:
        return "։";
    case USCRIPT_THAI:
    case USCRIPT_LAO:
        return "";
    default:
        return ".";
    }
}

} // namespace

std::string ExtractiveSummariser::displayName() const {
    return "Varnic, on this Mac";
}

CallDigest ExtractiveSummariser::digest(const std::vector<Segment>& segments, const DigestContext& context,
                                        std::stop_token /*stop*/) const {
    return makeDigest(segments, context);
}

CallDigest ExtractiveSummariser::makeDigest(const std::vector<Segment>& segments, const DigestContext& context,
                                            const Region& region, Date now, const NounTagger& tagger) {
    const bool isEnglish = Language::isEnglish(context.language);
    CallDigest digest;
    if (isEnglish) {
        digest.actions = ActionFinder::find(segments);
    }
    digest.summary = keySentences(segments, digest.actions, std::nullopt, context.language);
    digest.title = TitleSuggester::title(segments, context, region, tagger);
    if (isEnglish) {
        digest.email = EmailDrafter::draft(digest.title, digest.summary, digest.actions, context);
    }
    digest.provider = ExtractiveSummariser().displayName();
    digest.isLocal = true;
    digest.createdAt = now;
    return digest;
}

std::vector<std::string> ExtractiveSummariser::keySentences(const std::vector<Segment>& segments,
                                                            const std::vector<ActionItem>& excluding,
                                                            std::optional<std::size_t> limit,
                                                            std::string_view language) {
    const bool isEnglish = Language::isEnglish(language);
    std::vector<Candidate> candidates = candidatesOf(segments, language);
    rank(candidates, isEnglish);
    auto chosen = choose(candidates, excluding, limit.value_or(usualLimit(candidates.size())), language);
    std::ranges::sort(chosen, {}, &Candidate::order);
    std::vector<std::string> sentences;
    sentences.reserve(chosen.size());
    for (const Candidate* candidate : chosen) {
        sentences.push_back(isEnglish ? tidy(candidate->text) : tidy(candidate->text, language));
    }
    return sentences;
}

std::string ExtractiveSummariser::tidy(std::string_view text, std::string_view language) {
    static const Pattern blanks("\\s+");
    icu::UnicodeString sentence = blanks.replaceAll(Unicode::utf16(Unicode::trim(text)), u" ");
    if (sentence.isEmpty()) {
        return {};
    }
    const icu::Locale locale(Language::bare(language).c_str());
    sentence.toTitle(nullptr, locale, U_TITLECASE_WHOLE_STRING | U_TITLECASE_NO_LOWERCASE);
    return Unicode::utf8(sentence).append(missingEnd(sentence));
}

std::string ExtractiveSummariser::tidy(std::string_view text) {
    static const Pattern blanks("\\s+");
    const icu::UnicodeString stripped = Unicode::utf16(TextKit::stripLeadIns(text));
    std::string sentence = TextKit::capitalisedFirst(Unicode::utf8(blanks.replaceAll(stripped, u" ")));
    if (!sentence.empty() && !std::string_view(".!?").contains(sentence.back())) {
        sentence += '.';
    }
    return sentence;
}

} // namespace varnic
