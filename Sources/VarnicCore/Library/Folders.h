#pragma once

#include "VarnicCore/Models/Date.h"

#include <chrono>
#include <filesystem>
#include <vector>

/// Moving and removing in the library's folders. Any thread.
namespace varnic::Folders {

/// Makes a folder and its parents, for the owner only, where they are missing. Throws LibraryError.
void make(const std::filesystem::path& folder);

/// What lies directly in a folder; nothing when it cannot be listed.
std::vector<std::filesystem::path> entries(const std::filesystem::path& folder);

/// Moves a file or folder, to another disk too; nothing happens when there is none. Throws LibraryError, also when
/// something stands at the target, and then leaves both as they are.
void moveIfThere(const std::filesystem::path& from, const std::filesystem::path& to);

/// Removes a file or folder with all that it holds; a failure is ignored.
void removeAll(const std::filesystem::path& entry);

/// Whether an entry was changed more than `age` before `now`; false when the date of its change cannot be read.
bool isOlder(const std::filesystem::path& entry, Date now, std::chrono::days age);

} // namespace varnic::Folders
