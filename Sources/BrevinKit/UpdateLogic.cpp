#include "BrevinKit/UpdateLogic.h"

#include <sodium.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>

namespace brevin::UpdateLogic {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Takes the run of digits at the front, without leading zeros; empty for the value 0.
std::string_view takeNumber(std::string_view& text) {
    const auto length = static_cast<std::size_t>(std::ranges::find_if_not(text, isDigit) - text.begin());
    std::string_view number = text.substr(0, length);
    text.remove_prefix(length);
    number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
    return number;
}

/// Whole numbers of any length.
std::strong_ordering compareNumbers(std::string_view a, std::string_view b) {
    return a.size() != b.size() ? a.size() <=> b.size() : a <=> b;
}

std::strong_ordering compare(std::string_view a, std::string_view b) {
    while (!a.empty() && !b.empty()) {
        if (isDigit(a.front()) && isDigit(b.front())) {
            if (const auto order = compareNumbers(takeNumber(a), takeNumber(b)); order != std::strong_ordering::equal) {
                return order;
            }
        } else {
            // The bytes of UTF-8 are in the order of the code points.
            if (a.front() != b.front()) {
                return static_cast<std::uint8_t>(a.front()) <=> static_cast<std::uint8_t>(b.front());
            }
            a.remove_prefix(1);
            b.remove_prefix(1);
        }
    }
    return a.size() <=> b.size();
}

/// The bytes of a base64 text that holds exactly so many.
template <std::size_t Size>
std::optional<std::array<std::uint8_t, Size>> decodeBase64(std::string_view text) {
    std::array<std::uint8_t, Size> bytes{};
    std::size_t length = 0;
    const int result = sodium_base642bin(bytes.data(), bytes.size(), text.data(), text.size(), nullptr, &length,
                                         nullptr, sodium_base64_VARIANT_ORIGINAL);
    return result == 0 && length == Size ? std::optional(bytes) : std::nullopt;
}

/// Takes the text up to the next dot from the front, and reads it as a whole number; 0 when it is none.
std::int64_t takePart(std::string_view& text) {
    const std::string_view part = text.substr(0, text.find('.'));
    text.remove_prefix(std::min(part.size() + 1, text.size()));
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), number);
    return error == std::errc() && end == part.data() + part.size() ? number : 0;
}

} // namespace

bool isNewer(std::string_view candidate, std::string_view current) {
    return compare(candidate, current) == std::strong_ordering::greater;
}

bool isVersion(std::string_view text) {
    constexpr std::size_t longest = 64;
    constexpr std::string_view others = ".-+";
    return !text.empty() && text.size() <= longest && isDigit(text.front()) && std::ranges::all_of(text, [&](char c) {
        return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || others.contains(c);
    });
}

bool verify(std::span<const std::uint8_t> data, std::string_view signature, std::string_view publicKey) {
    const auto signatureBytes = decodeBase64<crypto_sign_BYTES>(signature);
    const auto keyBytes = decodeBase64<crypto_sign_PUBLICKEYBYTES>(publicKey);
    return sodium_init() >= 0 && signatureBytes && keyBytes &&
           crypto_sign_verify_detached(signatureBytes->data(), data.data(), data.size(), keyBytes->data()) == 0;
}

bool systemSupports(const std::optional<std::string>& minimum, const SystemVersion& system) {
    if (!minimum || minimum->empty()) {
        return true;
    }
    std::string_view rest = *minimum;
    SystemVersion oldest;
    for (std::int64_t* part : {&oldest.major, &oldest.minor, &oldest.patch}) {
        *part = takePart(rest);
    }
    return system >= oldest;
}

} // namespace brevin::UpdateLogic
