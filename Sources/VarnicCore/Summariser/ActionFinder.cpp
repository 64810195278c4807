#include "VarnicCore/Summariser/ActionFinder.h"

#include "VarnicCore/Summariser/DueDate.h"
#include "VarnicCore/Text/Pattern.h"
#include "VarnicCore/Text/TextKit.h"
#include "VarnicCore/Text/Unicode.h"
#include "VarnicCore/Text/WordProfile.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace varnic::ActionFinder {

namespace {

constexpr std::size_t mostActions = 20;

std::optional<Speaker> theSpeaker(Speaker speaker) {
    return speaker;
}

std::optional<Speaker> theOther(Speaker speaker) {
    return other(speaker);
}

std::optional<Speaker> nobody(Speaker /*speaker*/) {
    return std::nullopt;
}

/// An opening that makes a clause a to-do, matched at the front of the lower-cased clause and cut off from it.
struct Rule {
    Pattern opening;
    /// Who owes it, given who spoke.
    std::optional<Speaker> (*owner)(Speaker speaker);

    Rule(std::string_view expression, std::optional<Speaker> (*whose)(Speaker)) : opening(expression), owner(whose) {}
};

/// In the order in which they are tried.
const std::array<Rule, 4>& rules() {
    static const std::array<Rule, 4> table{
        Rule("(?:i'll|i will|i'm going to|i am going to|i'm gonna|i need to|i have to|i should|i can|let me|"
             "i'll make sure to|i'll try to|i'll go ahead and|i'll just)\\s+",
             theSpeaker),
        Rule("(?:can you|could you|would you|will you|can you please|could you please|would you mind|you'll need to|"
             "you need to|you should|you have to|make sure you|please)\\s+",
             theOther),
        Rule(
            "(?:we'll|we will|we need to|we should|we have to|we're going to|we are going to|we must|let's|let us)\\s+",
            nobody),
        Rule("(?:action item|to do|todo|next step|follow up|follow-up)s?\\s*[:\\-–]\\s*", nobody),
    };
    return table;
}

/// Whether a lower-cased clause opens like a commitment and is none.
bool isNoAction(const icu::UnicodeString& lower) {
    static const Pattern openings("(?:i'll|i will) (?:be honest|tell you what|admit|say|be there in a sec)|"
                                  "let me (?:think|see|check that i|just say|be clear|guess|know if you)|"
                                  "let's (?:see|say|be honest|not)\\b|"
                                  "(?:can|could) you (?:hear|see) (?:me|my|it|that|the screen)|"
                                  "(?:i can|we can) (?:see|hear)\\b|"
                                  "(?:i|we) (?:can't|cannot|couldn't)\\b|"
                                  "can you (?:believe|imagine)|"
                                  "i should (?:say|mention|have)\\b|"
                                  "you should (?:see|have seen|know)\\b|"
                                  "please (?:hold|bear with)\\b");
    return openings.matchAt(0, lower).has_value();
}

struct Opening {
    const Rule& rule;
    /// How many user-visible characters of the lower-cased clause it covers.
    std::size_t characters;
};

std::optional<Opening> findOpening(const std::string& lower) {
    const icu::UnicodeString units = Unicode::utf16(lower);
    for (const Rule& rule : rules()) {
        if (const auto match = rule.opening.matchAt(0, units)) {
            if (isNoAction(units)) {
                return std::nullopt;
            }
            const std::string covered = Unicode::utf8(units.tempSubString(0, match->end));
            return Opening{rule, Unicode::characterCount(covered)};
        }
    }
    return std::nullopt;
}

/// Without a "please" at the end and the blanks and the comma before it; end punctuation stays.
icu::UnicodeString withoutLastPlease(const icu::UnicodeString& text) {
    static const Pattern please("please\\s*([?.!]*)$", Pattern::Case::insensitive);
    const auto match = please.find(text);
    if (!match) {
        return text;
    }
    // The blanks before it are looked for from here backwards: an expression that begins with them would try every one
    // of a long run of blanks as a start.
    const auto skipBlanks = [&](std::int32_t position) {
        while (position > 0 && u_isUWhiteSpace(text[position - 1]) != 0) {
            --position;
        }
        return position;
    };
    std::int32_t begin = skipBlanks(match->begin);
    if (begin > 0 && text[begin - 1] == u',') {
        begin = skipBlanks(begin - 1);
    }
    icu::UnicodeString kept(text, 0, begin);
    return kept.append(please.replaceAll(text.tempSubString(match->begin), u"$1"));
}

icu::UnicodeString withoutFillers(const icu::UnicodeString& text) {
    static const Pattern filler("(?:also|just|quickly|then|please)\\s+", Pattern::Case::insensitive);
    std::int32_t begin = 0;
    while (const auto match = filler.matchAt(begin, text)) {
        begin = match->end;
    }
    return {text, begin};
}

/// The task that is left of a clause after its opening.
std::string tidied(std::string_view rest) {
    const std::string text = Unicode::utf8(withoutFillers(withoutLastPlease(Unicode::utf16(rest))));
    return std::string(Unicode::trim(text, [](char32_t c) { return std::u32string_view(U" ?.!,;").contains(c); }));
}

template <std::size_t Count>
bool isAmong(const std::array<std::string_view, Count>& list, std::string_view word) {
    return std::ranges::find(list, word) != list.end();
}

/// Whether so little is left of a task that it says nothing.
bool isVague(std::string_view task) {
    constexpr std::array<std::string_view, 5> vagueObjects{"it", "that", "this", "so", "too"};
    constexpr std::array<std::string_view, 7> thoughts{"be", "think", "guess", "hope", "say", "mean", "know"};
    std::vector<std::string> words = TextKit::words(task);
    std::erase_if(words, [](const std::string& word) { return !Unicode::any(word, Unicode::isLetter); });
    return words.size() < 2 || (words.size() == 2 && isAmong(vagueObjects, words.back())) ||
           isAmong(thoughts, words.front());
}

/// The other party's words about themselves, as you would say them.
std::string flippedToThem(std::string_view text) {
    struct Flip {
        Pattern word;
        icu::UnicodeString becomes;

        Flip(std::string_view from, const char16_t* to)
            : word(std::string("\\b").append(from).append("\\b"), Pattern::Case::insensitive), becomes(to) {}
    };

    static const std::array<Flip, 6> table{Flip("me", u"them"),           Flip("my", u"their"), Flip("mine", u"theirs"),
                                           Flip("myself", u"themselves"), Flip("us", u"them"),  Flip("our", u"their")};
    icu::UnicodeString flipped = Unicode::utf16(text);
    for (const auto& [word, becomes] : table) {
        flipped = word.replaceAll(flipped, becomes);
    }
    return Unicode::utf8(flipped);
}

bool isSame(const ActionItem& a, const WordProfile& wordsOfA, const ActionItem& b, const WordProfile& wordsOfB) {
    return wordsOfA.isMoreSimilar(wordsOfB, 0.6) || (a.owner == b.owner && wordsOfA.covers(wordsOfB, 2, 0.8));
}

/// The to-dos found so far, each with the words to compare it by.
class Findings {
public:
    void add(ActionItem item) {
        WordProfile words(item.text);
        for (auto& [kept, keptWords] : found_) {
            if (isSame(item, words, kept, keptWords)) {
                if (words.contentCount() > keptWords.contentCount()) {
                    kept.text = std::move(item.text);
                    keptWords = std::move(words);
                }
                if (!kept.due) {
                    kept.due = std::move(item.due);
                }
                return;
            }
        }
        found_.emplace_back(std::move(item), std::move(words));
    }

    std::vector<ActionItem> take(std::size_t most) {
        std::vector<ActionItem> items;
        for (auto& [item, words] : found_) {
            if (items.size() == most) {
                break;
            }
            items.push_back(std::move(item));
        }
        return items;
    }

private:
    std::vector<std::pair<ActionItem, WordProfile>> found_;
};

} // namespace

std::vector<ActionItem> find(const std::vector<Segment>& segments) {
    Findings findings;
    for (const Segment& segment : segments) {
        for (const auto& sentence : TextKit::sentences(segment.text)) {
            for (const auto& clause : clauses(sentence)) {
                if (auto item = action(clause, segment.speaker, segment.start)) {
                    findings.add(std::move(*item));
                }
            }
        }
    }
    return findings.take(mostActions);
}

std::vector<std::string> clauses(std::string_view sentence) {
    // Possessive, so that a long run of blanks is walked over once.
    static const Pattern joint("(?:,|;|—|–)\\s++(?:but|so|and|then|also)?\\s*+(?=(?:i'll|i will|i'm going to|can you|"
                               "could you|would you|please|we'll|we need to|we should|let's|let me|you'll need to)\\b)",
                               Pattern::Case::insensitive);
    const std::string plain = Unicode::plainApostrophes(sentence);
    const std::string cut = Unicode::utf8(joint.replaceAll(Unicode::utf16(plain), u"\u0001"));
    std::vector<std::string> found;
    for (const auto piece : Unicode::split(cut, [](char32_t c) { return c == U'\u0001'; })) {
        if (const auto clause = Unicode::trimBlanks(piece); !clause.empty()) {
            found.emplace_back(clause);
        }
    }
    return found;
}

std::optional<ActionItem> action(std::string_view clause, Speaker speaker, std::optional<double> at) {
    const std::string stripped = Unicode::plainApostrophes(TextKit::stripLeadIns(clause));
    const std::string_view text = Unicode::trimBlanks(stripped);
    if (TextKit::wordCount(text) < 3) {
        return std::nullopt;
    }
    const auto opening = findOpening(Unicode::lowerCased(text));
    if (!opening) {
        return std::nullopt;
    }
    // Lower-casing may change the number of bytes and of code points, hence the count in characters.
    std::string task = tidied(text.substr(Unicode::firstCharacters(text, opening->characters).size()));
    if (isVague(task)) {
        return std::nullopt;
    }
    ActionItem item;
    item.owner = opening->rule.owner(speaker);
    if (speaker == Speaker::them && item.owner == Speaker::you) {
        task = flippedToThem(task);
    }
    item.text = TextKit::capitalisedFirst(task);
    item.due = DueDate::phrase(clause);
    item.at = at;
    return item;
}

bool same(const ActionItem& a, const ActionItem& b) {
    return isSame(a, WordProfile(a.text), b, WordProfile(b.text));
}

} // namespace varnic::ActionFinder
