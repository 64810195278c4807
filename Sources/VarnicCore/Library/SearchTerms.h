#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace varnic {

/// Where a term first stands in a folded text, or npos. Never worse than linear.
std::size_t findTerm(std::string_view folded, std::string_view term);

/// The terms of a query, and which of them a text holds. A few terms are looked for one by one; from `manyTerms` up an
/// automaton (Aho and Corasick, 1975) finds all in one pass, so that a pasted page costs no more than a word.
class SearchTerms {
public:
    static constexpr std::size_t manyTerms = 16;

    /// Folds the query and splits it at blanks, tabs and newlines; a repeated term counts once.
    explicit SearchTerms(std::string_view query);

    [[nodiscard]] bool empty() const { return terms_.empty(); }

    /// Folded, in the order of the query.
    [[nodiscard]] const std::vector<std::string>& all() const { return terms_; }

    /// The terms that stand in a folded text, in the order of the query. They point into this object. Any thread.
    [[nodiscard]] std::vector<std::string_view> foundIn(std::string_view folded) const;

private:
    /// A state of the automaton: the longest beginning of a term that the text read so far ends with.
    struct State {
        /// The state of the longest shorter beginning that the text ends with as well.
        std::uint32_t fallback = 0;
        /// The nearest state along the fallbacks, this one included, that is a whole term; 0 where none is.
        std::uint32_t nearestTerm = 0;
        /// Index of the term that ends here, or `noTerm`.
        std::uint32_t term = noTerm;
    };

    static constexpr std::uint32_t noTerm = 0xFFFFFFFF;

    void buildAutomaton();
    [[nodiscard]] std::uint32_t step(std::uint32_t state, char byte) const;
    [[nodiscard]] std::vector<std::string_view> foundByAutomaton(std::string_view folded) const;

    std::vector<std::string> terms_;
    std::vector<State> states_;
    /// (state, byte) to the state of the beginning that is one byte longer.
    std::unordered_map<std::uint64_t, std::uint32_t> edges_;
};

} // namespace varnic
