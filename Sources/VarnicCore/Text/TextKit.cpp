#include "VarnicCore/Text/TextKit.h"

#include "VarnicCore/Text/Breaks.h"
#include "VarnicCore/Text/Pattern.h"
#include "VarnicCore/Text/Tokens.h"
#include "VarnicCore/Text/Unicode.h"
#include "VarnicCore/Text/WordProfile.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <stdexcept>

namespace varnic::TextKit {

namespace {

char lowerAscii(char c) {
    constexpr char toLower = 'a' - 'A';
    return static_cast<char>(c + (c >= 'A' && c <= 'Z' ? toLower : 0));
}

/// Bytes handled at a time: a fixed count lets the compiler use vector instructions.
constexpr std::size_t blockSize = 32;

/// How many bytes at the front are ASCII.
std::size_t asciiLength(std::string_view text) {
    std::size_t length = 0;
    for (; length + blockSize <= text.size(); length += blockSize) {
        unsigned char all = 0;
        for (std::size_t i = 0; i < blockSize; ++i) {
            all |= static_cast<unsigned char>(text[length + i]);
        }
        if (all >= 0x80) {
            break;
        }
    }
    while (length < text.size() && static_cast<unsigned char>(text[length]) < 0x80) {
        ++length;
    }
    return length;
}

void appendLowered(std::string_view ascii, std::string& folded) {
    const std::size_t before = folded.size();
    // g++ 12 passes the new capacity in place of the size that was asked for.
    folded.resize_and_overwrite(before + ascii.size(), [&](char* data, std::size_t /*size*/) {
        char* const lowered = data + before;
        std::size_t at = 0;
        for (; at + blockSize <= ascii.size(); at += blockSize) {
            for (std::size_t i = 0; i < blockSize; ++i) {
                lowered[at + i] = lowerAscii(ascii[at + i]);
            }
        }
        for (; at < ascii.size(); ++at) {
            lowered[at] = lowerAscii(ascii[at]);
        }
        return before + ascii.size();
    });
}

const icu::Normalizer2& normalizer(const icu::Normalizer2* (*instance)(UErrorCode&)) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* found = instance(status);
    if (U_FAILURE(status) != 0) {
        throw std::runtime_error("ICU has no normalisation data");
    }
    return *found;
}

icu::UnicodeString normalized(const icu::UnicodeString& text, const icu::Normalizer2* (*instance)(UErrorCode&)) {
    UErrorCode status = U_ZERO_ERROR;
    return normalizer(instance).normalize(text, status);
}

icu::UnicodeString withPlainWidth(const icu::UnicodeString& text) {
    icu::UnicodeString plain;
    for (std::int32_t i = 0; i < text.length(); ++i) {
        const char16_t unit = text[i];
        if (unit >= 0xFF00 && unit <= 0xFFEF) {
            plain += normalized(icu::UnicodeString(unit), icu::Normalizer2::getNFKCInstance);
        } else {
            plain += unit;
        }
    }
    return plain;
}

icu::UnicodeString withoutMarks(const icu::UnicodeString& text) {
    icu::UnicodeString plain;
    for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
        const UChar32 c = text.char32At(i);
        if (u_charType(c) != U_NON_SPACING_MARK) {
            plain += c;
        }
    }
    return plain;
}

std::string foldAny(std::string_view text) {
    icu::UnicodeString folded = withPlainWidth(Unicode::utf16(text));
    folded.foldCase(U_FOLD_CASE_DEFAULT);
    folded = withoutMarks(normalized(folded, icu::Normalizer2::getNFDInstance));
    return Unicode::utf8(normalized(folded, icu::Normalizer2::getNFCInstance));
}

/// The folded characters from U+0080 to U+024F.
constexpr char32_t firstOfLatin = 0x80;
constexpr char32_t endOfLatin = 0x250;

const std::string& foldedLatin(char32_t c) {
    static const auto table = [] {
        std::array<std::string, endOfLatin - firstOfLatin> folded;
        for (std::size_t i = 0; i < folded.size(); ++i) {
            folded[i] = foldAny(Unicode::utf8(icu::UnicodeString(static_cast<UChar32>(firstOfLatin + i))));
        }
        return folded;
    }();
    return table[c - firstOfLatin];
}

/// Dashes, quotation marks and dots, which fold to themselves.
bool isTypographic(char32_t c) {
    return c >= 0x2010 && c <= 0x2027 && c != 0x2019;
}

/// Whether a character folds in the same way whatever stands beside it, once the marks are gone.
bool foldsAlone(char32_t c) {
    return c < endOfLatin || isTypographic(c) || c == 0x2019;
}

bool keepsItsCapital(std::string_view firstWord) {
    if (firstWord == "I" || firstWord.starts_with("I'") || firstWord.starts_with("I\u2019")) {
        return true;
    }
    const auto isCapital = [](char32_t c) {
        return u_hasBinaryProperty(static_cast<UChar32>(c), UCHAR_UPPERCASE) != 0;
    };
    return Unicode::any(firstWord.substr(Unicode::firstCharacters(firstWord, 1).size()), isCapital);
}

} // namespace

const WordSet& stopWords() {
    static const WordSet words{
        "a",          "about",      "above",   "after",  "again",    "against",    "all",       "am",
        "an",         "and",        "any",     "are",    "as",       "at",         "be",        "because",
        "been",       "before",     "being",   "below",  "between",  "both",       "but",       "by",
        "can",        "could",      "did",     "do",     "does",     "doing",      "down",      "during",
        "each",       "few",        "for",     "from",   "further",  "had",        "has",       "have",
        "having",     "he",         "her",     "here",   "hers",     "herself",    "him",       "himself",
        "his",        "how",        "i",       "if",     "in",       "into",       "is",        "it",
        "its",        "itself",     "just",    "me",     "more",     "most",       "my",        "myself",
        "no",         "nor",        "not",     "now",    "of",       "off",        "on",        "once",
        "only",       "or",         "other",   "our",    "ours",     "ourselves",  "out",       "over",
        "own",        "same",       "she",     "should", "so",       "some",       "such",      "than",
        "that",       "the",        "their",   "theirs", "them",     "themselves", "then",      "there",
        "these",      "they",       "this",    "those",  "through",  "to",         "too",       "under",
        "until",      "up",         "very",    "was",    "we",       "were",       "what",      "when",
        "where",      "which",      "while",   "who",    "whom",     "why",        "will",      "with",
        "would",      "you",        "your",    "yours",  "yourself", "yourselves", "i'll",      "i'm",
        "i've",       "i'd",        "we'll",   "we're",  "we've",    "you'll",     "you're",    "you've",
        "it's",       "that's",     "there's", "let's",  "don't",    "doesn't",    "didn't",    "can't",
        "won't",      "isn't",      "aren't",  "yeah",   "yes",      "okay",       "ok",        "um",
        "uh",         "erm",        "hmm",     "like",   "really",   "think",      "know",      "going",
        "get",        "got",        "gonna",   "want",   "kind",     "sort",       "thing",     "things",
        "stuff",      "maybe",      "well",    "right",  "sure",     "also",       "actually",  "basically",
        "lot",        "bit",        "mean",    "say",    "said",     "see",        "look",      "make",
        "one",        "two",        "good",    "great",  "cool",     "thanks",     "thank",     "hey",
        "hello",      "bye",        "oh",      "need",   "let",      "might",      "must",      "shall",
        "via",        "per",        "etc",     "yep",    "nope",     "today",      "tomorrow",  "week",
        "time",       "come",       "back",    "first",  "next",     "last",       "something", "anything",
        "everything", "still",      "even",    "much",   "many",     "way",        "around",    "pretty",
        "probably",   "definitely", "sounds",  "sound",  "perfect",  "talk",       "talking",   "call",
        "send",       "take",       "put",     "use",    "done",     "work",       "fine",      "nice",
        "awesome",    "everyone",
    };
    return words;
}

std::string fold(std::string_view text) {
    std::string folded;
    appendFolded(text, folded);
    return folded;
}

void appendFolded(std::string_view text, std::string& folded) {
    for (std::size_t begin = 0; begin < text.size();) {
        const std::string_view plain = text.substr(begin, asciiLength(text.substr(begin)));
        appendLowered(plain, folded);
        begin += plain.size();
        if (begin == text.size()) {
            break;
        }
        std::size_t end = begin;
        const char32_t c = Unicode::next(text, end);
        if (c < endOfLatin) {
            folded += foldedLatin(c);
        } else if (c == 0x2019) {
            folded += '\'';
        } else if (isTypographic(c)) {
            folded += text.substr(begin, end - begin);
        } else {
            for (std::size_t behind = end; behind < text.size() && !foldsAlone(Unicode::next(text, behind));) {
                end = behind;
            }
            folded += foldAny(text.substr(begin, end - begin));
        }
        begin = end;
    }
}

std::vector<std::string> sentences(std::string_view text, std::string_view language) {
    std::vector<std::string> found;
    for (const auto piece : Breaks::sentences(text, language)) {
        if (const auto sentence = Unicode::trim(piece); !sentence.empty()) {
            found.emplace_back(sentence);
        }
    }
    return found;
}

std::vector<std::string> words(std::string_view text, std::string_view language) {
    std::vector<std::string> found;
    const std::string plain = Unicode::plainApostrophes(text);
    std::ranges::transform(Breaks::words(plain, language), std::back_inserter(found), Unicode::lowerCased);
    return found;
}

bool isContentWord(std::string_view word) {
    return !stopWords().contains(word) && Unicode::any(word, Unicode::isLetter) && Unicode::characterCount(word) >= 3;
}

bool isLongWord(std::string_view word) {
    const std::size_t least = Unicode::any(word, Tokens::isUnspaced) ? 2 : 4;
    return Unicode::any(word, Unicode::isLetter) && Unicode::characterCount(word) >= least;
}

std::vector<std::string> contentWords(std::string_view text) {
    std::vector<std::string> found = words(text);
    std::erase_if(found, [](const std::string& word) { return !isContentWord(word); });
    return found;
}

double similarity(std::string_view a, std::string_view b) {
    return WordProfile(a).similarity(WordProfile(b));
}

std::size_t wordCount(std::string_view text) {
    const auto counts = [](const Token& piece) {
        return Unicode::any(piece.text, [](char32_t c) { return Unicode::isLetter(c) || Unicode::isNumber(c); });
    };
    return static_cast<std::size_t>(std::ranges::count_if(Tokens::split(text), counts));
}

std::string stripLeadIns(std::string_view text) {
    // No two of these can match at one place, so that it makes no difference in which order they are tried.
    static const Pattern leadIn(
        "(?:so|yeah|yes|okay|ok|well|um|uh|and|but|right|alright|also|oh|great|cool|sure|anyway|"
        "basically|actually|like|hmm|erm)\\b[,.!]?\\s*",
        Pattern::Case::insensitive);
    const std::string_view trimmed = Unicode::trimBlanks(text);
    const icu::UnicodeString units = Unicode::utf16(trimmed);
    std::int32_t begin = 0;
    for (auto match = leadIn.matchAt(begin, units); match && match->end < units.length();
         match = leadIn.matchAt(begin, units)) {
        begin = match->end;
    }
    return begin == 0 ? std::string(trimmed) : Unicode::utf8(units.tempSubString(begin));
}

std::string lowercasedFirst(std::string_view text) {
    const auto pieces = Unicode::split(text, [](char32_t c) { return c == U' '; });
    if (pieces.empty() || keepsItsCapital(pieces.front())) {
        return std::string(text);
    }
    const auto first = Unicode::firstCharacters(text, 1);
    return Unicode::lowerCased(first).append(text.substr(first.size()));
}

std::string capitalisedFirst(std::string_view text) {
    const auto first = Unicode::firstCharacters(text, 1);
    return Unicode::upperCased(first).append(text.substr(first.size()));
}

} // namespace varnic::TextKit
