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

/// To be called once all settings have been read, and before any is written. A file of which something can't be read
/// (`isDamaged` where that is a value) or that is from a later version is kept aside under another name, since settings
/// that are written later replace what it holds. The user's sentence about that; nothing where all is well.
std::optional<std::string> keepAside(const QSettings& store, bool isDamaged);

/// Writes what is not written yet, in place of the whole file or not at all. The user's sentence where it is not on the
/// disk then.
std::optional<std::string> write(const QSettings& store);

} // namespace varnic::SettingsFile
