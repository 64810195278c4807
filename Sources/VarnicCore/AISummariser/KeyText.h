#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

/// What a user may give as an API key.
namespace varnic::KeyText {

/// More bytes than any provider's key has.
inline constexpr std::size_t longest = 16UL * 1024;

/// It can be no key; `what()` is the user's sentence, without the text.
class Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The key in a text as it was pasted: without the white space around it. Throws Error for what is empty then, too
/// long, or more than one line of printable ASCII, since it goes into a header of a request.
std::string checked(std::string_view pasted);

} // namespace varnic::KeyText
