#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace varnic {

/// What is needed of a text to compare its words with those of many others.
class WordProfile {
public:
    /// `language` is the text’s, a tag; where its stop words aren’t known, long words stand for the others.
    explicit WordProfile(std::string_view text, std::string_view language = "en");

    /// TextKit::similarity of the two texts.
    [[nodiscard]] double similarity(const WordProfile& other) const;

    /// Whether the similarity is above the bound; quick where the texts have little in common.
    [[nodiscard]] bool isMoreSimilar(const WordProfile& other, double bound) const;

    /// The number of TextKit::contentWords, duplicates counted.
    [[nodiscard]] std::size_t contentCount() const { return contentCount_; }

    /// Whether of the smaller set of content words, which has `least` words or more (1 at least), at least this part
    /// is in the other set too.
    [[nodiscard]] bool covers(const WordProfile& other, std::size_t least, double part) const;

private:
    /// Distinct words in alphabetical order.
    struct Words {
        std::vector<std::string> sorted;
        /// A bit for each word, by its hash: every bit that another set lacks is a word that it lacks.
        std::uint64_t bits = 0;

        void take(std::vector<std::string> words);
        [[nodiscard]] std::size_t mostShared(const Words& other) const;
        [[nodiscard]] std::size_t shared(const Words& other) const;
    };

    /// The sets that the similarity of two texts is computed from: the telling words if both have some.
    static std::pair<const Words&, const Words&> compared(const WordProfile& a, const WordProfile& b);

    /// The words with a letter, those of them that are no stop words, and of these the ones that carry meaning.
    Words all_;
    Words telling_;
    Words content_;
    std::size_t contentCount_ = 0;
};

} // namespace varnic
