#include "VarnicCore/Models/Uuid.h"

#include <sys/random.h>

#include <cerrno>
#include <system_error>

namespace varnic {

namespace {

constexpr std::size_t textLength = 36;

constexpr bool isDashPosition(std::size_t position) {
    return position == 8 || position == 13 || position == 18 || position == 23;
}

constexpr std::uint8_t noDigit = 0xFF;

/// The value of a hexadecimal digit by its character; a table, since branches on random digits are mispredicted.
constexpr auto hexValues = [] {
    std::array<std::uint8_t, 256> values{};
    values.fill(noDigit);
    for (std::uint8_t i = 0; i < 16; ++i) {
        values[static_cast<unsigned char>("0123456789ABCDEF"[i])] = i;
        values[static_cast<unsigned char>("0123456789abcdef"[i])] = i;
    }
    return values;
}();

constexpr std::uint8_t hexValue(char c) {
    return hexValues[static_cast<unsigned char>(c)];
}

} // namespace

Uuid Uuid::random() {
    Uuid id;
    // A request of up to 256 bytes is never cut short once the system's pool is ready (getrandom(2)).
    if (getrandom(id.bytes.data(), id.bytes.size(), 0) != static_cast<ssize_t>(id.bytes.size())) {
        throw std::system_error(errno, std::generic_category(), "getrandom");
    }
    id.bytes[6] = static_cast<std::uint8_t>((id.bytes[6] & 0x0F) | 0x40); // version 4
    id.bytes[8] = static_cast<std::uint8_t>((id.bytes[8] & 0x3F) | 0x80); // RFC 4122 variant
    return id;
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
    if (text.size() != textLength) {
        return std::nullopt;
    }
    Uuid id;
    std::size_t byte = 0;
    for (std::size_t position = 0; position < textLength;) {
        if (isDashPosition(position)) {
            if (text[position] != '-') {
                return std::nullopt;
            }
            ++position;
            continue;
        }
        const std::uint8_t high = hexValue(text[position]);
        const std::uint8_t low = hexValue(text[position + 1]);
        if ((high | low) > 0x0F) {
            return std::nullopt;
        }
        id.bytes[byte++] = static_cast<std::uint8_t>(high * 16 + low);
        position += 2;
    }
    return id;
}

std::string Uuid::text() const {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    text.reserve(textLength);
    for (const std::uint8_t byte : bytes) {
        if (isDashPosition(text.size())) {
            text += '-';
        }
        text += digits[byte >> 4];
        text += digits[byte & 0x0F];
    }
    return text;
}

} // namespace varnic
