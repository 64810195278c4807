#pragma once

#include <string_view>
#include <vector>

/// Where a text falls into sentences and words, by ICU's rules. The views point into the argument; malformed bytes
/// count as U+FFFD each. Any thread.
namespace varnic::Breaks {

/// The sentences in order, untrimmed; together they are the whole text. English, with its usual abbreviations ("Mr.",
/// "e.g.") not ending one.
std::vector<std::string_view> sentences(std::string_view text);

/// The words in order, without white space and punctuation; an inner apostrophe (U+0027 or U+2019) stays in its word.
std::vector<std::string_view> words(std::string_view text);

} // namespace varnic::Breaks
