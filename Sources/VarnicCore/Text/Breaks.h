#pragma once

#include <string_view>
#include <vector>

/// Where a text falls into sentences and words, by ICU's rules. The views point into the argument; malformed bytes
/// count as U+FFFD each. Any thread.
namespace varnic::Breaks {

/// The sentences in order, untrimmed; together they are the whole text. The usual abbreviations of the language, a tag,
/// don't end one ("Mr.", "e.g." in English).
std::vector<std::string_view> sentences(std::string_view text, std::string_view language = "en");

/// The words in order, without white space and punctuation; an inner apostrophe (U+0027 or U+2019) stays in its word.
/// Languages that are written without spaces fall into the words of ICU's dictionaries.
std::vector<std::string_view> words(std::string_view text, std::string_view language = "en");

} // namespace varnic::Breaks
