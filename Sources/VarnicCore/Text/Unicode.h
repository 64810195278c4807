#pragma once

#include <unicode/unistr.h>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// UTF-8 text by code points and user-visible characters, on ICU. Malformed bytes count as U+FFFD each. Views that are
/// returned point into the argument. Any thread.
namespace varnic::Unicode {

/// Tab and the space separators (Zs).
bool isBlank(char32_t c);
/// U+000A to U+000D, U+0085, U+2028, U+2029.
bool isNewline(char32_t c);
/// Blank or newline.
bool isSpace(char32_t c);
/// General category L.
bool isLetter(char32_t c);
/// General category Nd, Nl or No.
bool isNumber(char32_t c);

/// The code point at the byte `position`, which moves past it. The position must be before the text's end.
char32_t next(std::string_view text, std::size_t& position);

using CharacterTest = bool (*)(char32_t);

/// Whether the test holds for some code point.
bool any(std::string_view text, CharacterTest test);

/// The text without the code points at both ends for which the test holds.
std::string_view trim(std::string_view text, CharacterTest test);
/// The text without the code points at its end for which the test holds.
std::string_view trimEnd(std::string_view text, CharacterTest test);
/// The text without blanks and newlines at both ends.
std::string_view trim(std::string_view text);
/// The text without blanks at both ends; newlines stay.
std::string_view trimBlanks(std::string_view text);

/// The pieces between code points for which the test holds; empty pieces are left out.
std::vector<std::string_view> split(std::string_view text, CharacterTest separator);

/// Lower and upper case by the root locale.
std::string lowerCased(std::string_view text);
std::string upperCased(std::string_view text);

/// Every right single quotation mark (U+2019) as an apostrophe.
std::string plainApostrophes(std::string_view text);

/// The number of user-visible characters (extended grapheme clusters).
std::size_t characterCount(std::string_view text);

/// The byte offsets at which the user-visible characters begin.
std::vector<std::size_t> characterStarts(std::string_view text);

/// The first `count` user-visible characters.
std::string_view firstCharacters(std::string_view text, std::size_t count);

icu::UnicodeString utf16(std::string_view text);
std::string utf8(const icu::UnicodeString& text);

} // namespace varnic::Unicode
