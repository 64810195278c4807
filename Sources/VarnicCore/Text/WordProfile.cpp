#include "VarnicCore/Text/WordProfile.h"

#include "VarnicCore/Text/Language.h"
#include "VarnicCore/Text/TextKit.h"
#include "VarnicCore/Text/Unicode.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <utility>

namespace varnic {

namespace {

double jaccard(std::size_t shared, std::size_t a, std::size_t b) {
    return static_cast<double>(shared) / static_cast<double>(a + b - shared);
}

std::size_t lackedBits(std::uint64_t bits, std::uint64_t other) {
    return static_cast<std::size_t>(std::popcount(bits & ~other));
}

} // namespace

void WordProfile::Words::take(std::vector<std::string> words) {
    std::ranges::sort(words);
    const auto repeated = std::ranges::unique(words);
    words.erase(repeated.begin(), repeated.end());
    sorted = std::move(words);
    for (const auto& word : sorted) {
        bits |= std::uint64_t{1} << (std::hash<std::string>{}(word) % 64);
    }
}

std::size_t WordProfile::Words::mostShared(const Words& other) const {
    return std::min(sorted.size() - lackedBits(bits, other.bits), other.sorted.size() - lackedBits(other.bits, bits));
}

std::size_t WordProfile::Words::shared(const Words& other) const {
    std::size_t count = 0;
    for (auto a = sorted.begin(), b = other.sorted.begin(); a != sorted.end() && b != other.sorted.end();) {
        const auto order = *a <=> *b;
        if (order == 0) {
            ++count;
        }
        a += order <= 0 ? 1 : 0;
        b += order >= 0 ? 1 : 0;
    }
    return count;
}

WordProfile::WordProfile(std::string_view text, std::string_view language) {
    std::vector<std::string> words = TextKit::words(text, language);
    const bool isEnglish = Language::isEnglish(language);
    std::erase_if(words, [](const std::string& word) { return !Unicode::any(word, Unicode::isLetter); });
    all_.take(words);
    std::erase_if(words, [isEnglish](const std::string& word) {
        return isEnglish ? TextKit::stopWords().contains(word) : !TextKit::isLongWord(word);
    });
    telling_.take(words);
    std::erase_if(words,
                  [isEnglish](const std::string& word) { return isEnglish && Unicode::characterCount(word) < 3; });
    contentCount_ = words.size();
    content_.take(std::move(words));
}

std::pair<const WordProfile::Words&, const WordProfile::Words&> WordProfile::compared(const WordProfile& a,
                                                                                      const WordProfile& b) {
    const bool telling = !a.telling_.sorted.empty() && !b.telling_.sorted.empty();
    return telling ? std::pair<const Words&, const Words&>(a.telling_, b.telling_)
                   : std::pair<const Words&, const Words&>(a.all_, b.all_);
}

double WordProfile::similarity(const WordProfile& other) const {
    const auto [a, b] = compared(*this, other);
    if (a.sorted.empty() && b.sorted.empty()) {
        return 1;
    }
    return jaccard(a.shared(b), a.sorted.size(), b.sorted.size());
}

bool WordProfile::isMoreSimilar(const WordProfile& other, double bound) const {
    const auto [a, b] = compared(*this, other);
    const bool anyWord = !a.sorted.empty() || !b.sorted.empty();
    if (anyWord && jaccard(a.mostShared(b), a.sorted.size(), b.sorted.size()) <= bound) {
        return false;
    }
    return similarity(other) > bound;
}

bool WordProfile::covers(const WordProfile& other, std::size_t least, double part) const {
    const std::size_t smaller = std::min(content_.sorted.size(), other.content_.sorted.size());
    const auto isEnough = [&](std::size_t count) {
        return static_cast<double>(count) / static_cast<double>(smaller) >= part;
    };
    return smaller >= least && isEnough(content_.mostShared(other.content_)) &&
           isEnough(content_.shared(other.content_));
}

} // namespace varnic
