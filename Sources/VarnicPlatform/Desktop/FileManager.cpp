#include "VarnicPlatform/Desktop/FileManager.h"

#include <glib.h>
#include <systemd/sd-bus.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>

namespace varnic {

namespace {

/// Microseconds that a file manager may take to start.
constexpr std::uint64_t patience = 10'000'000;

bool asked(const char* method, const std::filesystem::path& entry) {
    const std::unique_ptr<char, decltype(&g_free)> uri(
        g_filename_to_uri(std::filesystem::absolute(entry).c_str(), nullptr, nullptr), g_free);
    sd_bus* opened = nullptr;
    if (!uri || sd_bus_open_user(&opened) < 0) {
        return false;
    }
    const std::unique_ptr<sd_bus, decltype(&sd_bus_flush_close_unref)> bus(opened, sd_bus_flush_close_unref);
    sd_bus_set_method_call_timeout(bus.get(), patience);
    return sd_bus_call_method(bus.get(), "org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
                              "org.freedesktop.FileManager1", method, nullptr, nullptr, "ass", 1, uri.get(), "") >= 0;
}

bool opened(const std::filesystem::path& folder) {
    std::string program = "xdg-open";
    std::string name = folder.string();
    std::array<char*, 3> command{program.data(), name.data(), nullptr};
    return g_spawn_async(
               nullptr, command.data(), nullptr,
               static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL | G_SPAWN_STDERR_TO_DEV_NULL),
               nullptr, nullptr, nullptr, nullptr) != FALSE;
}

} // namespace

bool FileManager::showFolder(const std::filesystem::path& folder) {
    return asked("ShowFolders", folder) || opened(folder);
}

bool FileManager::showFile(const std::filesystem::path& file) {
    return asked("ShowItems", file) || opened(file.parent_path());
}

} // namespace varnic
