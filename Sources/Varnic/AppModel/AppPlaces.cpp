#include "Varnic/AppModel/AppPlaces.h"

#include "Varnic/AppModel/AppSettings.h"
#include "VarnicCore/Library/LibraryMove.h"
#include "VarnicCore/Library/NoteFileReader.h"

#include <fmt/format.h>
#include <glib.h>

#include <cstdlib>
#include <stdexcept>
#include <string_view>

namespace varnic {

namespace {

namespace fs = std::filesystem;

std::string_view environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string_view() : value;
}

std::unique_ptr<QSettings> openSettings(bool isScratch) {
    return std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                       isScratch ? "app.brevin.varnic.selftest" : "Varnic", "settings");
}

} // namespace

/// For each library a folder of its own, where the desktop keeps what programs have to remember.
fs::path AppPlaces::spareFolderFor(const fs::path& library) {
    std::error_code ignored;
    return fs::path(g_get_user_state_dir()) / "Varnic" / "Unsaved" /
           fmt::format("{:016x}", fingerprintOf(fs::absolute(library, ignored).native()));
}

bool AppPlaces::isScratchByEnvironment() {
    return !environment("VARNIC_DATA_DIR").empty();
}

std::pair<fs::path, bool> AppPlaces::dataDirectoryFromEnvironment() {
    if (const std::string_view folder = environment("VARNIC_DATA_DIR"); !folder.empty()) {
        return {folder, true};
    }
    const auto settings = openSettings(false);
    const fs::path moved = settings->value(AppSettings::libraryFolderKey).toString().toStdString();
    if (!moved.is_absolute()) {
        return {fs::path(g_get_user_data_dir()) / "Varnic" / "Library", false};
    }
    if (std::error_code ignored; !fs::is_directory(moved / "notes", ignored)) {
        throw std::runtime_error(fmt::format("The library is in “{}”, which isn’t there now. Connect the disk that it "
                                             "is on and start Varnic again. To go "
                                             "without it, remove the line “{}” from “{}”.",
                                             moved.string(), AppSettings::libraryFolderKey,
                                             settings->fileName().toStdString()));
    }
    // The settings name it, so it is not what is left of a move: one that was cut off may not have taken its mark away.
    std::error_code ignored;
    fs::remove(moved / LibraryMove::markName, ignored);
    return {moved, false};
}

AppPlaces AppPlaces::forDemo(const fs::path& folder) {
    return {.dataDirectory = folder / "Library",
            .spareFolder = folder / "Unsaved",
            .isFixed = true,
            .isScratch = true,
            .settings = std::make_unique<QSettings>(QString::fromStdString((folder / "settings.ini").string()),
                                                    QSettings::IniFormat)};
}

AppPlaces AppPlaces::fromEnvironment() {
    auto [folder, isScratch] = dataDirectoryFromEnvironment();
    auto settings = openSettings(isScratch);
    if (isScratch && environment("VARNIC_SELFTEST") != "persist") {
        settings->clear();
    }
    fs::path spares = spareFolderFor(folder);
    return {.dataDirectory = std::move(folder),
            .spareFolder = std::move(spares),
            .isFixed = isScratch,
            .isScratch = isScratch,
            .settings = std::move(settings)};
}

} // namespace varnic
