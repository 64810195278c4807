#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

/// Language as things that can be counted and compared, for English where none is named, by its tag. "’" (U+2019)
/// counts as an apostrophe. Pure functions of UTF-8 text; malformed bytes count as U+FFFD each. Any thread.
namespace varnic::TextKit {

/// Hashes strings and views of them alike.
struct WordHash {
    using is_transparent = void;

    std::size_t operator()(std::string_view word) const noexcept { return std::hash<std::string_view>{}(word); }
};

using WordSet = std::unordered_set<std::string, WordHash, std::equal_to<>>;

/// Lower-cased words too common to tell what a text is about.
const WordSet& stopWords();

/// The form for comparisons that ignore case, diacritics and width: case folded ("ß" becomes "ss"), without nonspacing
/// marks, half- and full-width forms as the plain ones, "’" as "'".
std::string fold(std::string_view text);

/// Appends the folded form of the text to `folded`: for callers who fold much and keep the buffer.
void appendFolded(std::string_view text, std::string& folded);

/// The sentences in order, trimmed, without empty ones. Apostrophes stay as they are.
std::vector<std::string> sentences(std::string_view text, std::string_view language = "en");

/// The words in order, lower-cased, duplicates kept; digits too.
std::vector<std::string> words(std::string_view text, std::string_view language = "en");

/// Whether a lower-cased word of English carries meaning: three characters or more, a letter, no stop word.
bool isContentWord(std::string_view word);

/// Whether a word carries meaning as far as its length tells, in a language whose stop words aren't known: four
/// characters or more, two in scripts that are written without spaces, and a letter.
bool isLongWord(std::string_view word);

/// The words that carry meaning, in order, duplicates kept.
std::vector<std::string> contentWords(std::string_view text);

/// How much two texts have in common, 0 to 1: the Jaccard index of their sets of words, without stop words where both
/// texts have others. Two texts without a word are alike. To compare one text often, see WordProfile.
double similarity(std::string_view a, std::string_view b);

/// The number of pieces between white space that hold a letter or a number. What is written without spaces is counted
/// by its words.
std::size_t wordCount(std::string_view text);

/// The text without filler words at its front ("So, yeah, we ship" gives "we ship") and blanks at its ends; never
/// emptied by it.
std::string stripLeadIns(std::string_view text);

/// The text with its first character lowered, unless the first word is "I" or holds a capital further on ("QBR").
std::string lowercasedFirst(std::string_view text);

/// The text with its first character in upper case.
std::string capitalisedFirst(std::string_view text);

} // namespace varnic::TextKit
