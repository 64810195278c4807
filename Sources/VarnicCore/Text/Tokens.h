#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace varnic {

/// A word of a text with the punctuation at it.
struct Token {
    std::string_view text;
    /// Whether it follows the one before without a blank.
    bool isJoined = false;

    bool operator==(const Token&) const = default;
};

/// A text as the pieces that can be timed and moved to another line one by one: what stands between blanks, and the
/// words of scripts that are written without them, by ICU's dictionaries. Pure; any thread.
namespace Tokens {

/// Whether words of the character's script stand without blanks between them, as in Chinese, Japanese and Thai.
bool isUnspaced(char32_t c);

/// The tokens in order; the views point into the text.
std::vector<Token> split(std::string_view text);

/// Appends a token to a text.
void append(std::string& text, std::string_view token, bool isJoined);

} // namespace Tokens
} // namespace varnic
