#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace brevin {

/// What has installed a program and keeps it up to date.
struct PackageOwner {
    enum class System {
        dpkg,
        rpm,
        flatpak,
        /// It lies where only a system’s own tools install, and neither of these knows it.
        other
    };

    System system;
    /// Its name there; empty for `other`.
    std::string package;

    /// The owner of a program; nothing where it lies in a folder of the user’s own. Asks the package databases, which
    /// takes a moment. Any thread.
    static std::optional<PackageOwner> of(const std::filesystem::path& program);

    /// A sentence that tells how this system updates the program.
    [[nodiscard]] std::string advice(const std::string& appName) const;

    bool operator==(const PackageOwner&) const = default;
};

} // namespace brevin
