#include "VarnicPlatform/Speech/TranscriptGuards.h"

#include "VarnicCore/Text/Unicode.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <new>
#include <utility>
#include <vector>

namespace varnic::TranscriptGuards {

namespace {

/// Tokens a second at which the engine stops by itself, and the part of it that is no speech any more.
constexpr double tokenCap = 15;
constexpr double suspiciousPart = 0.9;
/// More than speech has that goes anywhere.
constexpr double suspiciousRatio = 2.4;

constexpr std::size_t longestPhrase = 20;

std::size_t repeatsOf(std::size_t phraseLength) {
    return phraseLength == 1 ? 6 : 4;
}

/// The word as compared: lower case, without what is neither letter nor number at its ends.
std::string keyOf(std::string_view word) {
    const auto other = [](char32_t c) { return !Unicode::isLetter(c) && !Unicode::isNumber(c); };
    return Unicode::lowerCased(Unicode::trim(word, other));
}

struct Repetition {
    std::size_t first = 0;
    /// Words of the phrase, and how often it stands there.
    std::size_t length = 0;
    std::size_t times = 0;
};

/// The first repetition at a word or behind it; `times` is 0 when there is none. The shortest phrase counts.
Repetition findRepetition(const std::vector<std::string>& keys, std::size_t from) {
    for (std::size_t first = from; first < keys.size(); ++first) {
        for (std::size_t length = 1; length <= longestPhrase && first + 2 * length <= keys.size(); ++length) {
            std::size_t end = first + length;
            while (end < keys.size() && keys[end] == keys[end - length]) {
                ++end;
            }
            const std::size_t times = (end - first) / length;
            if (times >= repeatsOf(length)) {
                return {first, length, times};
            }
        }
    }
    return {};
}

std::vector<std::string> keysOf(const std::vector<std::string_view>& words) {
    std::vector<std::string> keys;
    std::ranges::transform(words, std::back_inserter(keys), keyOf);
    return keys;
}

} // namespace

bool isSuspicious(std::string_view text, std::size_t tokens, double seconds) {
    return static_cast<double>(tokens) >= suspiciousPart * tokenCap * seconds || repeats(text) ||
           compressionRatio(text) > suspiciousRatio;
}

bool repeats(std::string_view text) {
    return findRepetition(keysOf(Unicode::split(text, Unicode::isSpace)), 0).times > 0;
}

std::string withoutRepeats(std::string_view text) {
    std::vector<std::string_view> words = Unicode::split(text, Unicode::isSpace);
    std::vector<std::string> keys = keysOf(words);
    for (Repetition found = findRepetition(keys, 0); found.times > 0; found = findRepetition(keys, found.first)) {
        const auto first = static_cast<std::ptrdiff_t>(found.first);
        const auto surplus = static_cast<std::ptrdiff_t>(found.length * (found.times - 1));
        words.erase(words.begin() + first, words.begin() + first + surplus);
        keys.erase(keys.begin() + first, keys.begin() + first + surplus);
    }
    std::string result;
    for (const std::string_view word : words) {
        result += result.empty() ? "" : " ";
        result += word;
    }
    return result;
}

double compressionRatio(std::string_view text) {
    std::vector<Bytef> compressed(::compressBound(text.size()));
    uLongf size = compressed.size();
    // It can only fail for want of room, and the bound is room enough, or of memory.
    if (::compress(compressed.data(), &size, reinterpret_cast<const Bytef*>(text.data()), text.size()) != Z_OK) {
        throw std::bad_alloc();
    }
    return static_cast<double>(text.size()) / static_cast<double>(size);
}

std::vector<bool> saidWords(std::string_view text) {
    constexpr std::array<std::pair<char, char>, 3> brackets{{{'(', ')'}, {'[', ']'}, {'*', '*'}}};
    std::vector<bool> said;
    char closing = 0;
    for (const std::string_view word : Unicode::split(text, Unicode::isSpace)) {
        std::size_t from = 0;
        if (const auto* opened = std::ranges::find(brackets, word.front(), &std::pair<char, char>::first);
            closing == 0 && opened != brackets.end()) {
            closing = opened->second;
            from = 1;
        }
        said.push_back(closing == 0 && (hasLetter(word) || Unicode::any(word, Unicode::isNumber)));
        if (closing != 0 && word.find(closing, from) != std::string_view::npos) {
            closing = 0;
        }
    }
    return said;
}

bool hasLetter(std::string_view text) {
    return Unicode::any(text, Unicode::isLetter);
}

} // namespace varnic::TranscriptGuards
