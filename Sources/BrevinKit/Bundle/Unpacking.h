#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>

namespace brevin {

/// Unpacks the archive of an app. Any thread.
namespace Unpacking {

/// What an archive may come to.
struct Limits {
    /// Of all files together.
    std::uint64_t bytes = 0;
    std::size_t entries = 0;

    /// For an archive of so many bytes: programs shrink to a third or so, while a bomb holds a thousand times its size.
    static Limits forArchive(std::size_t length);
};

/// Unpacks a zip into an empty folder that is nobody else's. Throws std::runtime_error, whose text is a sentence for
/// the user, and then leaves what was unpacked so far. Refused is whatever an app has no use for: names that are
/// absolute, lead up or hold control characters, the same name twice, links that lead out of their topmost folder, what
/// is neither file, folder nor link, set-user-id and similar bits, and more than the limits.
void unpack(std::span<const std::uint8_t> zip, const std::filesystem::path& folder, const Limits& limits);

} // namespace Unpacking

} // namespace brevin
