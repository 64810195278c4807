#pragma once

#include <optional>
#include <string_view>

namespace varnic::LinuxPrograms {

/// The bundle identifier, as `CallSource::guess` knows it, of a calling application or browser of Linux; nothing for
/// any other program. The program is named by its binary (with or without folders), its desktop entry (with or without
/// ".desktop"; a snap's too), its Flatpak id or its window class, in any case of letters. Browsers without an
/// identifier of their own count as the browser that they are built from.
std::optional<std::string_view> bundleIdentifier(std::string_view program);

} // namespace varnic::LinuxPrograms
