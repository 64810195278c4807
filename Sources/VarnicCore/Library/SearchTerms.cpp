#include "VarnicCore/Library/SearchTerms.h"

#include "VarnicCore/Text/TextKit.h"
#include "VarnicCore/Text/Unicode.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <iterator>
#include <unordered_set>

namespace varnic {

namespace {

constexpr std::uint32_t root = 0;

bool contains(std::string_view folded, std::string_view term) {
    return findTerm(folded, term) != std::string_view::npos;
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
    std::vector<std::string_view> found;
    if (states_.empty()) {
        std::ranges::copy_if(terms_, std::back_inserter(found),
                             [folded](const std::string& term) { return contains(folded, term); });
        return found;
    }
    const std::vector<bool> isFound = foundByAutomaton(folded);
    for (std::size_t index = 0; index < terms_.size(); ++index) {
        if (isFound[index]) {
            found.emplace_back(terms_[index]);
        }
    }
    return found;
}

void SearchTerms::countInEach(std::string_view folded, std::span<const std::size_t> ends,
                              std::span<std::size_t> counts) const {
    std::ranges::fill(counts, 0);
    if (!states_.empty()) {
        for (std::size_t i = 0, begin = 0; i < ends.size(); begin = ends[i++] + 1) {
            const std::vector<bool> found = foundByAutomaton(folded.substr(begin, ends[i] - begin));
            counts[i] = static_cast<std::size_t>(std::ranges::count(found, true));
        }
        return;
    }
    for (const std::string& term : terms_) {
        std::size_t begin = 0;
        for (auto text = ends.begin(); begin < folded.size();) {
            const std::size_t found = findTerm(folded.substr(begin), term);
            if (found == std::string_view::npos) {
                break;
            }
            text = std::ranges::upper_bound(text, ends.end(), begin + found);
            ++counts[static_cast<std::size_t>(text - ends.begin())];
            begin = *text + 1;
        }
    }
}

void SearchTerms::buildAutomaton() {
    addClasses();
    addStates();
    addFallbacks();
}

void SearchTerms::addClasses() {
    classCount_ = 1;
    for (const std::string& term : terms_) {
        for (const char byte : term) {
            std::uint16_t& known = classes_[static_cast<unsigned char>(byte)];
            if (known == 0) {
                known = static_cast<std::uint16_t>(classCount_++);
            }
        }
    }
}

/// A state for each prefix of a term. Missing transitions lead to the root for now.
void SearchTerms::addStates() {
    const auto add = [this] {
        states_.emplace_back();
        next_.resize(states_.size() * classCount_, root);
        return static_cast<std::uint32_t>(states_.size() - 1);
    };
    add();
    for (std::size_t index = 0; index < terms_.size(); ++index) {
        std::uint32_t state = root;
        for (const char byte : terms_[index]) {
            const std::size_t byteClass = classes_[static_cast<unsigned char>(byte)];
            if (next(state, byteClass) == root) {
                const std::uint32_t fresh = add();
                next(state, byteClass) = fresh;
            }
            state = next(state, byteClass);
        }
        states_[state].term = static_cast<std::uint32_t>(index);
    }
}

/// Where the current term does not continue, the text may continue one that began later.
void SearchTerms::addFallbacks() {
    std::deque<std::uint32_t> waiting{root}; // the shorter prefixes first
    while (!waiting.empty()) {
        const std::uint32_t state = waiting.front();
        waiting.pop_front();
        for (std::size_t byteClass = 0; byteClass < classCount_; ++byteClass) {
            const std::uint32_t behind = state == root ? root : next(states_[state].fallback, byteClass);
            std::uint32_t& own = next(state, byteClass);
            if (own == root) {
                own = behind;
                continue;
            }
            State& longer = states_[own];
            longer.fallback = behind;
            longer.nearestTerm = longer.term != noTerm ? own : states_[behind].nearestTerm;
            waiting.push_back(own);
        }
    }
}

std::vector<bool> SearchTerms::foundByAutomaton(std::string_view folded) const {
    std::vector<bool> found(terms_.size());
    std::uint32_t state = root;
    for (const char byte : folded) {
        state = next_[state * classCount_ + classes_[static_cast<unsigned char>(byte)]];
        // Where a term has been found before, so have all terms that are suffixes of it.
        for (std::uint32_t at = states_[state].nearestTerm; at != root && !found[states_[at].term];) {
            found[states_[at].term] = true;
            at = states_[states_[at].fallback].nearestTerm;
        }
    }
    return found;
}

} // namespace varnic
