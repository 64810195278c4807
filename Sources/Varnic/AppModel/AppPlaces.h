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
    /// The environment says where the library is, so that it can't be moved.
    bool isFixed = false;
    /// Data and settings are for trying out: no key ring is touched.
    bool isScratch = false;
    std::unique_ptr<QSettings> settings;

    /// $VARNIC_DATA_DIR with settings of its own, which are wiped unless VARNIC_SELFTEST is "persist"; else the user's
    /// library and settings. Throws as `dataDirectoryFromEnvironment`.
    static AppPlaces fromEnvironment();

    /// All of it in this folder, for a demonstration: nothing of the user's is read or written.
    static AppPlaces forDemo(const std::filesystem::path& folder);

    /// The folder alone, and whether it is for trying out; changes no settings. Throws std::runtime_error with the
    /// user's sentence where the library was moved to a place that isn't there now, as on a disk that is not connected:
    /// another one must not begin there.
    static std::pair<std::filesystem::path, bool> dataDirectoryFromEnvironment();

    /// Whether the environment says where the library is, which is one for trying out then.
    static bool isScratchByEnvironment();

    /// Where the notes are kept that the library in this folder does not take.
    static std::filesystem::path spareFolderFor(const std::filesystem::path& library);
};

} // namespace varnic
