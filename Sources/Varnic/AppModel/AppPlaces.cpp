#include "Varnic/AppModel/AppPlaces.h"

#include "VarnicCore/Library/NoteFileReader.h"

#include <fmt/format.h>
#include <glib.h>

#include <cstdlib>
#include <string_view>

namespace varnic {

namespace {

namespace fs = std::filesystem;

std::string_view environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string_view() : value;
}

/// For each library a folder of its own, where the desktop keeps what programs have to remember.
fs::path spareFolderFor(const fs::path& library) {
    std::error_code ignored;
    return fs::path(g_get_user_state_dir()) / "Varnic" / "Unsaved" /
           fmt::format("{:016x}", fingerprintOf(fs::absolute(library, ignored).native()));
}

} // namespace

std::pair<fs::path, bool> AppPlaces::dataDirectoryFromEnvironment() {
    if (const std::string_view folder = environment("VARNIC_DATA_DIR"); !folder.empty()) {
        return {folder, true};
    }
    return {fs::path(g_get_user_data_dir()) / "Varnic" / "Library", false};
}

AppPlaces AppPlaces::fromEnvironment() {
    auto [folder, isScratch] = dataDirectoryFromEnvironment();
    auto settings = std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                                isScratch ? "app.brevin.varnic.selftest" : "Varnic", "settings");
    if (isScratch && environment("VARNIC_SELFTEST") != "persist") {
        settings->clear();
    }
    fs::path spares = spareFolderFor(folder);
    return {.dataDirectory = std::move(folder),
            .spareFolder = std::move(spares),
            .isScratch = isScratch,
            .settings = std::move(settings)};
}

} // namespace varnic
