#pragma once

#include <filesystem>

/// The desktop's file manager. May wait for it to start; not for the main thread.
namespace varnic::FileManager {

/// Shows what lies in a folder, by org.freedesktop.FileManager1 on the session bus, else by xdg-open. Whether anything
/// was there to show it.
bool showFolder(const std::filesystem::path& folder);

/// Shows the folder that a file lies in, with the file selected where the file manager does that.
bool showFile(const std::filesystem::path& file);

} // namespace varnic::FileManager
