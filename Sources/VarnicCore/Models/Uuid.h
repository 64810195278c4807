#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace varnic {

/// A 128-bit identifier (RFC 4122). The value made by default is the nil id; real ids come from `random` or `parse`.
struct Uuid {
    std::array<std::uint8_t, 16> bytes{};

    /// A fresh random id (version 4) from the system's random source. Throws std::system_error if there is none.
    static Uuid random();

    /// Reads the form 8-4-4-4-12 of hexadecimal digits, in either case; nothing for any other text.
    static std::optional<Uuid> parse(std::string_view text);

    /// The canonical form in upper case.
    [[nodiscard]] std::string text() const;

    auto operator<=>(const Uuid&) const = default;
};

} // namespace varnic

template <>
struct std::hash<varnic::Uuid> {
    std::size_t operator()(const varnic::Uuid& id) const noexcept {
        return std::hash<std::string_view>{}({reinterpret_cast<const char*>(id.bytes.data()), id.bytes.size()});
    }
};
