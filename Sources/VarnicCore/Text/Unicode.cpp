#include "VarnicCore/Text/Unicode.h"

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <utility>

namespace varnic::Unicode {

namespace {

const std::uint8_t* bytes(std::string_view text) {
    return reinterpret_cast<const std::uint8_t*>(text.data());
}

/// Takes one code point from the back of the text that ends at `position`.
char32_t previous(std::string_view text, std::size_t& position) {
    // The macro counts in 32 bits; a code point has four bytes at most.
    const std::size_t window = position - std::min<std::size_t>(position, 4);
    auto inWindow = static_cast<std::int32_t>(position - window);
    UChar32 c = 0;
    const std::uint8_t* data = bytes(text) + window;
    U8_PREV_OR_FFFD(data, 0, inWindow, c);
    position = window + static_cast<std::size_t>(inWindow);
    return static_cast<char32_t>(c);
}

bool isAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

icu::BreakIterator& characterBreaks() {
    thread_local const std::unique_ptr<icu::BreakIterator> iterator = [] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::BreakIterator> made(
            icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        if (U_FAILURE(status) != 0) {
            throw std::runtime_error("ICU has no character breaks");
        }
        return made;
    }();
    return *iterator;
}

/// Of plain ASCII only CR LF is a character of more than one byte.
bool isByteACharacter(std::string_view text) {
    return isAscii(text) && text.find('\r') == std::string_view::npos;
}

/// Whether the code point and another of these are never parts of one character: what Latin, punctuation and Han are
/// written with (Unicode Standard Annex 29, values Other, Control and LF of Grapheme_Cluster_Break).
bool standsAlone(char32_t c) {
    return (c < 0x300 && c != U'\r') || (c >= 0x2010 && c <= 0x2027) || (c >= 0x2030 && c <= 0x205E) ||
           (c >= 0x4E00 && c <= 0x9FFF);
}

using CharacterVisit = std::function<bool(std::size_t)>;

/// Calls `visit` with the byte offset after each character, counted from `offset`, until it gives false, and gives
/// what it gave last.
bool forEachBreak(std::string_view text, std::size_t offset, const CharacterVisit& visit) {
    UErrorCode status = U_ZERO_ERROR;
    UText input = UTEXT_INITIALIZER;
    utext_openUTF8(&input, text.data(), static_cast<std::int64_t>(text.size()), &status);
    icu::BreakIterator& breaks = characterBreaks();
    breaks.setText(&input, status);
    breaks.first();
    bool goesOn = true;
    for (std::int32_t end = breaks.next(); goesOn && end != icu::BreakIterator::DONE; end = breaks.next()) {
        goesOn = visit(offset + static_cast<std::size_t>(end));
    }
    utext_close(&input);
    return goesOn;
}

/// Calls `visit` with the byte offset after each character, until it gives false. ICU, which takes its time, is asked
/// only about the stretches where code points may join.
void forEachCharacterEnd(std::string_view text, const CharacterVisit& visit) {
    std::size_t begin = 0;   // of what has not been visited yet
    std::size_t current = 0; // where the last code point that was read begins
    bool wasAlone = false;
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t here = position;
        const bool isAlone = standsAlone(next(text, position));
        if (isAlone && wasAlone) {
            const bool isOne = current == begin;
            if (!(isOne ? visit(here) : forEachBreak(text.substr(begin, here - begin), begin, visit))) {
                return;
            }
            begin = here;
        }
        current = here;
        wasAlone = isAlone;
    }
    if (begin < text.size()) {
        forEachBreak(text.substr(begin), begin, visit);
    }
}

} // namespace

char32_t next(std::string_view text, std::size_t& position) {
    UChar32 c = 0;
    const std::uint8_t* data = bytes(text);
    U8_NEXT_OR_FFFD(data, position, text.size(), c);
    return static_cast<char32_t>(c);
}

bool isBlank(char32_t c) {
    return c == U'\t' || u_charType(static_cast<UChar32>(c)) == U_SPACE_SEPARATOR;
}

bool isNewline(char32_t c) {
    return (c >= 0x0A && c <= 0x0D) || c == 0x85 || c == 0x2028 || c == 0x2029;
}

bool isSpace(char32_t c) {
    return isBlank(c) || isNewline(c);
}

bool isLetter(char32_t c) {
    return (U_GET_GC_MASK(static_cast<UChar32>(c)) & U_GC_L_MASK) != 0;
}

bool isNumber(char32_t c) {
    return (U_GET_GC_MASK(static_cast<UChar32>(c)) & U_GC_N_MASK) != 0;
}

bool any(std::string_view text, CharacterTest test) {
    for (std::size_t position = 0; position < text.size();) {
        if (test(next(text, position))) {
            return true;
        }
    }
    return false;
}

std::string_view trim(std::string_view text, CharacterTest test) {
    std::size_t begin = 0;
    for (std::size_t position = 0; position < text.size() && test(next(text, position));) {
        begin = position;
    }
    return trimEnd(text.substr(begin), test);
}

std::string_view trimEnd(std::string_view text, CharacterTest test) {
    std::size_t end = text.size();
    for (std::size_t position = end; position > 0 && test(previous(text, position));) {
        end = position;
    }
    return text.substr(0, end);
}

std::string_view trim(std::string_view text) {
    return trim(text, isSpace);
}

std::string_view trimBlanks(std::string_view text) {
    return trim(text, isBlank);
}

std::vector<std::string_view> split(std::string_view text, CharacterTest separator) {
    std::vector<std::string_view> pieces;
    std::size_t begin = 0;
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t here = position;
        if (separator(next(text, position))) {
            if (here > begin) {
                pieces.push_back(text.substr(begin, here - begin));
            }
            begin = position;
        }
    }
    if (begin < text.size()) {
        pieces.push_back(text.substr(begin));
    }
    return pieces;
}

std::string lowerCased(std::string_view text) {
    if (isAscii(text)) {
        std::string lower(text);
        std::ranges::transform(lower, lower.begin(),
                               [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; });
        return lower;
    }
    return utf8(utf16(text).toLower(icu::Locale::getRoot()));
}

std::string upperCased(std::string_view text) {
    return utf8(utf16(text).toUpper(icu::Locale::getRoot()));
}

std::string plainApostrophes(std::string_view text) {
    constexpr std::string_view typographic = "\u2019";
    std::string plain;
    plain.reserve(text.size());
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t found = std::min(text.find(typographic, position), text.size());
        plain += text.substr(position, found - position);
        if (found == text.size()) {
            break;
        }
        plain += '\'';
        position = found + typographic.size();
    }
    return plain;
}

std::size_t characterCount(std::string_view text) {
    if (isByteACharacter(text)) {
        return text.size();
    }
    std::size_t count = 0;
    forEachCharacterEnd(text, [&](std::size_t /*end*/) {
        ++count;
        return true;
    });
    return count;
}

std::vector<std::size_t> characterStarts(std::string_view text) {
    std::vector<std::size_t> starts;
    if (isByteACharacter(text)) {
        starts.resize(text.size());
        std::ranges::generate(starts, [start = std::size_t{0}]() mutable { return start++; });
        return starts;
    }
    std::size_t start = 0;
    forEachCharacterEnd(text, [&](std::size_t end) {
        starts.push_back(std::exchange(start, end));
        return true;
    });
    return starts;
}

std::string_view firstCharacters(std::string_view text, std::size_t count) {
    if (isByteACharacter(text)) {
        return text.substr(0, count);
    }
    std::size_t length = 0;
    std::size_t passed = 0;
    forEachCharacterEnd(text, [&](std::size_t end) {
        if (passed == count) {
            return false;
        }
        length = end;
        ++passed;
        return true;
    });
    return text.substr(0, length);
}

icu::UnicodeString utf16(std::string_view text) {
    return icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
}

std::string utf8(const icu::UnicodeString& text) {
    std::string result;
    return text.toUTF8String(result);
}

} // namespace varnic::Unicode
