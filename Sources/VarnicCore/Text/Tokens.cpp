#include "VarnicCore/Text/Tokens.h"

#include "VarnicCore/Text/Breaks.h"
#include "VarnicCore/Text/Unicode.h"

#include <unicode/uchar.h>

#include <cstddef>

namespace varnic::Tokens {

namespace {

/// No script before Thai's is written without blanks.
constexpr char32_t firstUnspaced = 0x0E00;

bool opens(char32_t c) {
    return (U_GET_GC_MASK(static_cast<UChar32>(c)) & (U_GC_PS_MASK | U_GC_PI_MASK)) != 0;
}

char32_t firstOf(std::string_view text) {
    std::size_t position = 0;
    return Unicode::next(text, position);
}

char32_t lastOf(std::string_view text) {
    std::size_t begin = text.size() - 1;
    while (begin > 0 && (static_cast<unsigned char>(text[begin]) & 0xC0U) == 0x80) {
        --begin;
    }
    return Unicode::next(text, begin);
}

/// Cuts a piece without blanks before its words; what opens a word, such as a bracket, goes along. Words that both are
/// of scripts with blanks are one word here, as in "24/7".
void cut(std::string_view piece, std::vector<Token>& tokens) {
    std::size_t begin = 0;
    std::string_view last;
    for (const std::string_view word : Breaks::words(piece)) {
        const auto found = static_cast<std::size_t>(word.data() - piece.data());
        const std::size_t at = Unicode::trimEnd(piece.substr(0, found), opens).size();
        const bool isCut = !last.empty() && (isUnspaced(lastOf(last)) || isUnspaced(firstOf(word)));
        if (isCut && at > begin) {
            tokens.push_back({piece.substr(begin, at - begin), begin > 0});
            begin = at;
        }
        last = word;
    }
    tokens.push_back({piece.substr(begin), begin > 0});
}

} // namespace

/// By the classes of Unicode's line breaking: Han and kana may be broken anywhere, and in Thai and its kin only a
/// dictionary tells where.
bool isUnspaced(char32_t c) {
    if (c < firstUnspaced) {
        return false;
    }
    const auto breaking = u_getIntPropertyValue(static_cast<UChar32>(c), UCHAR_LINE_BREAK);
    return breaking == U_LB_IDEOGRAPHIC || breaking == U_LB_COMPLEX_CONTEXT ||
           breaking == U_LB_CONDITIONAL_JAPANESE_STARTER;
}

std::vector<Token> split(std::string_view text) {
    std::vector<Token> tokens;
    for (const std::string_view piece : Unicode::split(text, Unicode::isSpace)) {
        if (Unicode::any(piece, isUnspaced)) {
            cut(piece, tokens);
        } else {
            tokens.push_back({piece, false});
        }
    }
    return tokens;
}

void append(std::string& text, std::string_view token, bool isJoined) {
    text += text.empty() || isJoined ? "" : " ";
    text += token;
}

} // namespace varnic::Tokens
