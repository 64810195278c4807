#include "Varnic/AppModel/SettingsFile.h"

#include <fmt/format.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <utility>

namespace varnic {

namespace {

namespace fs = std::filesystem;

constexpr const char* versionKey = "version";

/// Nothing of what is no file.
std::string bytesOf(const fs::path& file) {
    std::error_code ignored;
    if (!fs::is_regular_file(file, ignored)) {
        return {};
    }
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// Whether each line is one of an INI file. A store's status tells that only to the first of a process that reads it.
bool isWellFormed(const std::string& bytes) {
    std::istringstream lines(bytes);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t start = line.find_first_not_of(" \t\r");
        const bool isSaying = start != std::string::npos && line[start] != ';';
        const char needed = isSaying && line[start] == '[' ? ']' : '=';
        if (isSaying && line.find(needed) == std::string::npos) {
            return false;
        }
    }
    return true;
}

/// A name beside the file that is free, or of a file that holds the same, as another start has made it.
fs::path nameAside(const fs::path& file, const std::string& ending) {
    fs::path name = file.string() + ending;
    std::error_code ignored;
    const std::string bytes = bytesOf(file);
    const auto holdsTheSame = [&] { return !bytes.empty() && bytesOf(name) == bytes; };
    for (int i = 2; fs::exists(fs::symlink_status(name, ignored)) && !holdsTheSame(); ++i) {
        name = fmt::format("{}{}-{}", file.string(), ending, i);
    }
    return name;
}

} // namespace

bool SettingsFile::isLater(const QSettings& store) {
    return store.value(versionKey, version).toInt() > version;
}

SettingsFile::Reading SettingsFile::keepAside(const QSettings& store, bool isDamaged) {
    const fs::path file = store.fileName().toStdString();
    std::error_code failure;
    if (!fs::exists(fs::symlink_status(file, failure))) {
        return {};
    }
    if (store.status() == QSettings::AccessError) {
        // What can't be read can't be copied either.
        const fs::path aside = nameAside(file, ".unreadable");
        fs::rename(file, aside, failure);
        std::string problem =
            failure ? fmt::format("The settings in “{}” can’t be read, so they are as at first.", file.string())
                    : fmt::format("The settings can’t be read, so they are as at first. Their file is kept as “{}”.",
                                  aside.string());
        return {.problem = std::move(problem), .isIncomplete = true};
    }
    if (isLater(store)) {
        const fs::path aside = fmt::format("{}.version-{}", file.string(), store.value(versionKey).toInt());
        fs::copy_file(file, aside, fs::copy_options::skip_existing, failure);
        return {.problem =
                    "The settings are from a later version of Varnic. What this one doesn’t know of them is left "
                    "as it is."};
    }
    const bool isCut = !isWellFormed(bytesOf(file));
    if (!isDamaged && !isCut) {
        return {};
    }
    const fs::path aside = nameAside(file, ".damaged");
    fs::copy_file(file, aside, fs::copy_options::skip_existing, failure);
    return {.problem = "Some settings can’t be read and are as at first." +
                       (failure ? "" : fmt::format(" The file as it was is kept as “{}”.", aside.string())),
            .isIncomplete = isCut};
}

std::optional<std::string> SettingsFile::write(const QSettings& store) {
    // Shares what is to be written; but a store's status tells of its first failure forever.
    QSettings now(store.fileName(), store.format());
    now.sync();
    if (now.status() != QSettings::AccessError) {
        return std::nullopt;
    }
    return fmt::format("The settings can’t be saved: “{}” can’t be written.", store.fileName().toStdString());
}

} // namespace varnic
