#pragma once

#include "VarnicCore/Models/Segment.h"
#include "VarnicCore/Text/Unicode.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

/// What was said and what was heard, for tests of speech.
namespace varnic {

inline std::string textOf(const std::vector<Segment>& lines) {
    std::string text;
    for (const Segment& line : lines) {
        text += line.text + " ";
    }
    return text;
}

inline std::vector<std::string> wordsOf(const std::string& text) {
    std::vector<std::string> words;
    for (const std::string_view word : Unicode::split(text, Unicode::isSpace)) {
        std::string key;
        std::ranges::copy_if(Unicode::lowerCased(word), std::back_inserter(key),
                             [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; });
        words.push_back(key);
    }
    return words;
}

/// Substituted, missing and surplus words as a share of the words said.
inline double wordErrors(const std::string& said, const std::string& heard) {
    const std::vector<std::string> expected = wordsOf(said);
    const std::vector<std::string> words = wordsOf(heard);
    std::vector<std::size_t> row(words.size() + 1);
    std::ranges::generate(row, [count = std::size_t{0}]() mutable { return count++; });
    for (std::size_t i = 1; i <= expected.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= words.size(); ++j) {
            const std::size_t same = diagonal + (expected[i - 1] == words[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({same, row[j] + 1, row[j - 1] + 1});
        }
    }
    return static_cast<double>(row.back()) / static_cast<double>(expected.size());
}

/// What is read in the recording "two_cities.wav".
inline const std::string twoCities =
    "It was the best of times, it was the worst of times, it was the age of wisdom, it was the age of foolishness, it "
    "was the epoch of belief, it was the epoch of incredulity, it was the season of light, it was the season of "
    "darkness, it was the spring of hope, it was the winter of despair, we had everything before us, we had nothing "
    "before us, we were all going direct to heaven, we were all going direct the other way. In short, the period was "
    "so far like the present period that some of its noisiest authorities insisted on its being received, for good or "
    "for evil, in the superlative degree of comparison only.";

} // namespace varnic
