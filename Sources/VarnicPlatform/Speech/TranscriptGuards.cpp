#include "VarnicPlatform/Speech/TranscriptGuards.h"

#include "VarnicCore/Text/Tokens.h"
#include "VarnicCore/Text/Unicode.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstdint>
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

std::vector<std::string> keysOf(const std::vector<Token>& words) {
    std::vector<std::string> keys;
    std::ranges::transform(words, std::back_inserter(keys), keyOf, &Token::text);
    return keys;
}

/// The text in Unicode's standard compression, whose bytes are those of UTF-8 for English. In UTF-8 all letters of
/// another script begin with the same bytes, and any sentence looks as if it repeated itself.
std::string denseBytes(std::string_view text) {
    const icu::UnicodeString units = Unicode::utf16(text);
    constexpr const char* encoding = "SCSU";
    std::string bytes(static_cast<std::size_t>(units.extract(0, units.length(), nullptr, 0U, encoding)), '\0');
    units.extract(0, units.length(), bytes.data(), static_cast<std::uint32_t>(bytes.size()), encoding);
    return bytes;
}

} // namespace

bool isSuspicious(std::string_view text, std::size_t tokens, double seconds) {
    return static_cast<double>(tokens) >= suspiciousPart * tokenCap * seconds || repeats(text) ||
           compressionRatio(text) > suspiciousRatio;
}

bool repeats(std::string_view text) {
    return findRepetition(keysOf(Tokens::split(text)), 0).times > 0;
}

std::string withoutRepeats(std::string_view text) {
    std::vector<Token> words = Tokens::split(text);
    std::vector<std::string> keys = keysOf(words);
    for (Repetition found = findRepetition(keys, 0); found.times > 0; found = findRepetition(keys, found.first)) {
        const auto first = static_cast<std::ptrdiff_t>(found.first);
        const auto surplus = static_cast<std::ptrdiff_t>(found.length * (found.times - 1));
        words.erase(words.begin() + first, words.begin() + first + surplus);
        keys.erase(keys.begin() + first, keys.begin() + first + surplus);
    }
    std::string result;
    for (const auto& [word, isJoined] : words) {
        Tokens::append(result, word, isJoined);
    }
    return result;
}

double compressionRatio(std::string_view utf8) {
    const std::string text = denseBytes(utf8);
    std::vector<Bytef> compressed(::compressBound(text.size()));
    uLongf size = compressed.size();
    // It can only fail for want of room, and the bound is room enough, or of memory.
    if (::compress(compressed.data(), &size, reinterpret_cast<const Bytef*>(text.data()), text.size()) != Z_OK) {
        throw std::bad_alloc();
    }
    return static_cast<double>(text.size()) / static_cast<double>(size);
}

std::vector<bool> saidWords(std::string_view text) {
    using Bracket = std::pair<std::string_view, std::string_view>;
    constexpr std::array<Bracket, 6> brackets{
        {{"(", ")"}, {"[", "]"}, {"*", "*"}, {"（", "）"}, {"［", "］"}, {"【", "】"}}};
    std::vector<bool> said;
    std::string_view closing;
    for (const auto& [word, isJoined] : Tokens::split(text)) {
        std::size_t from = 0;
        const auto* opened =
            std::ranges::find_if(brackets, [&word](const Bracket& bracket) { return word.starts_with(bracket.first); });
        if (closing.empty() && opened != brackets.end()) {
            closing = opened->second;
            from = opened->first.size();
        }
        said.push_back(closing.empty() && (hasLetter(word) || Unicode::any(word, Unicode::isNumber)));
        if (!closing.empty() && word.find(closing, from) != std::string_view::npos) {
            closing = {};
        }
    }
    return said;
}

bool hasLetter(std::string_view text) {
    return Unicode::any(text, Unicode::isLetter);
}

} // namespace varnic::TranscriptGuards
