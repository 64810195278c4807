#pragma once

#include <QSettings>

#include <optional>
#include <string>

/// The file behind settings, which may be damaged, from a later version, or on a disk that takes nothing. Main thread.
namespace varnic::SettingsFile {

/// The version of the settings that this program writes. Those of a later one are read as far as they are known.
inline constexpr int version = 1;

/// Whether the settings are from a later version.
bool isLater(const QSettings& store);

/// What came of reading a file.
struct Reading {
    /// The user's sentence about what could not be read; nothing where all is well.
    std::optional<std::string> problem;
    /// The file may have held settings of which nothing is known any more.
    bool isIncomplete = false;
};

/// To be called once all settings have been read, and before any is written. A file of which something can't be read
/// (`isDamaged` where that is a value) or that is from a later version is kept aside under another name, since settings
/// that are written later replace what it holds.
Reading keepAside(const QSettings& store, bool isDamaged);

/// What to say where it isn't known any more whether and where the library was moved.
inline constexpr const char* libraryLost = "The settings that say where the library is couldn’t be read. If it was "
                                           "moved, choose its folder again in Settings, "
                                           "Recording, Library, “Change Folder…”.";

/// Writes what is not written yet, in place of the whole file or not at all. The user's sentence where it is not on the
/// disk then.
std::optional<std::string> write(const QSettings& store);

} // namespace varnic::SettingsFile
