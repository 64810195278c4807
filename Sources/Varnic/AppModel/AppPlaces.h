#pragma once

#include <QSettings>

#include <filesystem>
#include <memory>
#include <utility>

namespace varnic {

/// Where the application's data lies, from the environment.
struct AppPlaces {
    std::filesystem::path dataDirectory;
    /// Where notes are kept that the library does not take.
    std::filesystem::path spareFolder;
    /// Data and settings are for trying out: no key ring is touched.
    bool isScratch = false;
    std::unique_ptr<QSettings> settings;

    /// $VARNIC_DATA_DIR with settings of its own, which are wiped unless VARNIC_SELFTEST is "persist"; else the user's
    /// library and settings.
    static AppPlaces fromEnvironment();

    /// The folder alone, and whether it is for trying out; touches no settings.
    static std::pair<std::filesystem::path, bool> dataDirectoryFromEnvironment();
};

} // namespace varnic
