#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace brevin {

/// The version of the operating system.
struct SystemVersion {
    std::int64_t major = 0;
    std::int64_t minor = 0;
    std::int64_t patch = 0;

    auto operator<=>(const SystemVersion&) const = default;
};

/// Whether a release applies to this machine and may be trusted. Nothing here throws; any thread.
namespace UpdateLogic {

/// Whether `candidate` is the higher version. Runs of digits compare by their value ("1.10" is above "1.9", and "1.01"
/// equals "1.1"), everything else by its code points.
bool isNewer(std::string_view candidate, std::string_view current);

/// Whether the text can be a version at all: a digit, and then up to 63 letters, digits, dots, hyphens or plus signs.
bool isVersion(std::string_view text);

/// Whether `signature` is the Ed25519 signature (RFC 8032) of the data by the key. Both are base64 in its canonical
/// form with padding; false for anything else.
bool verify(std::span<const std::uint8_t> data, std::string_view signature, std::string_view publicKey);

/// Whether the system is at least the oldest one that a release runs on: true without one. Of a minimum such as
/// "14.1.2" a number that is missing or unreadable counts as 0.
bool systemSupports(const std::optional<std::string>& minimum, const SystemVersion& system);

} // namespace UpdateLogic

} // namespace brevin
