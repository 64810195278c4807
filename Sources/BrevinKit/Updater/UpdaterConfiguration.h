#pragma once

#include "BrevinKit/UpdateLogic.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

namespace brevin {

/// What an updater is told about its program.
struct UpdaterConfiguration {
    std::string appName;
    std::string identifier;
    std::string currentVersion = "1.0";
    std::optional<std::string> feedURL;
    /// Base64.
    std::optional<std::string> publicKey;
    /// The running program.
    std::filesystem::path program;
    /// The bundle that it lies in, if it lies in one.
    std::optional<std::filesystem::path> bundle;
    /// The user’s folder for what programs can make again.
    std::filesystem::path caches;
    /// The version of the C library, below which a program does not start; a feed’s minimumSystemVersion is one.
    SystemVersion system;
    std::chrono::milliseconds firstCheckAfter = std::chrono::seconds(8);
    std::chrono::milliseconds checkInterval = std::chrono::hours(6);

    /// From the Info.plist of the bundle that the program lies in. One that lies in no bundle, since a package has
    /// installed it, is described by `describedElsewhere`, where there is such a file.
    static UpdaterConfiguration of(const std::filesystem::path& program,
                                   const std::filesystem::path& describedElsewhere,
                                   const std::filesystem::path& caches);
};

} // namespace brevin
