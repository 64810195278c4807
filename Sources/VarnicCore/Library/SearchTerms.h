#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace varnic {

/// Where a term first stands in a folded text, or npos. Never worse than linear.
std::size_t findTerm(std::string_view folded, std::string_view term);

/// The terms of a query, and which of them a text holds. A few terms are looked for one by one; from `manyTerms` up an
/// automaton (Aho and Corasick, 1975) finds all in one pass, so that a pasted page costs no more than a few words.
class SearchTerms {
public:
    static constexpr std::size_t manyTerms = 6;

    /// Folds the query and splits it at blanks, tabs and newlines; a repeated term counts once.
    explicit SearchTerms(std::string_view query);

    [[nodiscard]] bool empty() const { return terms_.empty(); }

    /// Folded, in the order of the query.
    [[nodiscard]] const std::vector<std::string>& all() const { return terms_; }

    /// The terms that stand in a folded text, in the order of the query. They point into this object. Any thread.
    [[nodiscard]] std::vector<std::string_view> foundIn(std::string_view folded) const;

    /// How many of the terms stand in each of several folded texts that follow one another in `folded`, which takes far
    /// less time than one call a text. `ends` are their ends, and after each stands a newline, which is
    /// in no term. `counts` has an element for each and is overwritten. Any thread.
    void countInEach(std::string_view folded, std::span<const std::size_t> ends, std::span<std::size_t> counts) const;

private:
    /// A state of the automaton: the longest prefix of a term that the text read so far ends with.
    struct State {
        /// The state of the next shorter prefix that the text ends with as well.
        std::uint32_t fallback = 0;
        /// The nearest state along the fallbacks, this one included, that is a whole term; 0 where none is.
        std::uint32_t nearestTerm = 0;
        /// Index of the term that ends here, or `noTerm`.
        std::uint32_t term = noTerm;
    };

    static constexpr std::uint32_t noTerm = 0xFFFFFFFF;

    void buildAutomaton();
    void addClasses();
    void addStates();
    void addFallbacks();

    [[nodiscard]] std::uint32_t& next(std::uint32_t state, std::size_t byteClass) {
        return next_[state * classCount_ + byteClass];
    }

    /// For each term, whether it stands in the text.
    [[nodiscard]] std::vector<bool> foundByAutomaton(std::string_view folded) const;

    std::vector<std::string> terms_;
    std::vector<State> states_;
    /// Bytes that stand in no term are of class 0; each other one has a class of its own.
    std::array<std::uint16_t, 256> classes_{};
    std::size_t classCount_ = 0;
    /// For each state and class of byte, the state after the byte.
    std::vector<std::uint32_t> next_;
};

} // namespace varnic
