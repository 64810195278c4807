#include "VarnicCore/Library/SearchTerms.h"

#include "VarnicCore/Text/TextKit.h"
#include "VarnicCore/Text/Unicode.h"

#include <algorithm>
#include <cstring>
#include <unordered_set>

namespace varnic {

namespace {

constexpr std::uint32_t root = 0;

std::uint64_t edgeKey(std::uint32_t state, char byte) {
    return std::uint64_t{state} << 8 | static_cast<unsigned char>(byte);
}

} // namespace

std::size_t findTerm(std::string_view folded, std::string_view term) {
    // glibc's memmem skips through the text by hashes of two bytes; std::string_view::find tries every place at which
    // the first byte stands.
    const void* const found = memmem(folded.data(), folded.size(), term.data(), term.size());
    return found == nullptr ? std::string_view::npos
                            : static_cast<std::size_t>(static_cast<const char*>(found) - folded.data());
}

SearchTerms::SearchTerms(std::string_view query) {
    const std::string folded = TextKit::fold(query);
    std::unordered_set<std::string_view> seen;
    for (const std::string_view piece : Unicode::split(folded, Unicode::isSpace)) {
        if (seen.insert(piece).second) {
            terms_.emplace_back(piece);
        }
    }
    if (terms_.size() >= manyTerms) {
        buildAutomaton();
    }
}

std::vector<std::string_view> SearchTerms::foundIn(std::string_view folded) const {
    if (!states_.empty()) {
        return foundByAutomaton(folded);
    }
    std::vector<std::string_view> found;
    for (const std::string& term : terms_) {
        if (findTerm(folded, term) != std::string_view::npos) {
            found.emplace_back(term);
        }
    }
    return found;
}

void SearchTerms::buildAutomaton() {
    states_.emplace_back();

    // The states in order of their depth, with what their fallback is computed from.
    struct Edge {
        std::uint32_t from;
        std::uint32_t to;
        char byte;
        std::size_t depth;
    };

    std::vector<Edge> edges;
    for (std::size_t index = 0; index < terms_.size(); ++index) {
        std::uint32_t state = root;
        std::size_t depth = 0;
        for (const char byte : terms_[index]) {
            const auto [edge, isNew] =
                edges_.try_emplace(edgeKey(state, byte), static_cast<std::uint32_t>(states_.size()));
            if (isNew) {
                states_.emplace_back();
                edges.push_back({state, edge->second, byte, depth});
            }
            state = edge->second;
            ++depth;
        }
        states_[state].term = static_cast<std::uint32_t>(index);
    }
    std::ranges::stable_sort(edges, {}, &Edge::depth);
    for (const Edge& edge : edges) {
        State& state = states_[edge.to];
        state.fallback = edge.from == root ? root : step(states_[edge.from].fallback, edge.byte);
        state.nearestTerm = state.term != noTerm ? edge.to : states_[state.fallback].nearestTerm;
    }
}

std::uint32_t SearchTerms::step(std::uint32_t state, char byte) const {
    for (;;) {
        if (const auto edge = edges_.find(edgeKey(state, byte)); edge != edges_.end()) {
            return edge->second;
        }
        if (state == root) {
            return root;
        }
        state = states_[state].fallback;
    }
}

std::vector<std::string_view> SearchTerms::foundByAutomaton(std::string_view folded) const {
    std::unordered_set<std::uint32_t> found;
    std::uint32_t state = root;
    for (const char byte : folded) {
        state = step(state, byte);
        // Once a term was met, so were all those that it ends with.
        for (std::uint32_t term = states_[state].nearestTerm;
             term != root && found.insert(states_[term].term).second;) {
            term = states_[states_[term].fallback].nearestTerm;
        }
    }
    std::vector<std::uint32_t> order(found.begin(), found.end());
    std::ranges::sort(order);
    std::vector<std::string_view> terms;
    terms.reserve(order.size());
    for (const std::uint32_t index : order) {
        terms.emplace_back(terms_[index]);
    }
    return terms;
}

} // namespace varnic
