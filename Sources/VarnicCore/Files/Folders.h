#pragma once

#include "VarnicCore/Models/Date.h"

#include <chrono>
#include <filesystem>
#include <vector>

/// Moving and removing in the library's folders. Any thread.
namespace varnic::Folders {

/// Makes a folder and its parents, for the owner only, where they are missing. Throws LibraryError.
void make(const std::filesystem::path& folder);

/// Whether anything is there, a dangling link too. Throws LibraryError where that cannot be found out, as without the
/// permission or on a disk that has gone.
bool isThere(const std::filesystem::path& entry);

/// Throws LibraryError where there is no such folder or it cannot be looked into.
void expectAccess(const std::filesystem::path& folder);

/// What lies directly in a folder; nothing when there is no such folder. Throws LibraryError when it cannot be listed
/// or what lies in it cannot be looked at.
std::vector<std::filesystem::path> list(const std::filesystem::path& folder);

/// The same for callers that have no use for the error: nothing when it cannot be listed.
std::vector<std::filesystem::path> entries(const std::filesystem::path& folder);

/// Moves a file or folder, to another disk too; nothing happens when there is none. Throws LibraryError, also when
/// something stands at the target, and then leaves both as they are.
void moveIfThere(const std::filesystem::path& from, const std::filesystem::path& to);

/// Removes a file or folder with all that it holds; a failure is ignored.
void removeAll(const std::filesystem::path& entry);

/// Whether an entry was changed more than `age` before `now`; false when the date of its change cannot be read.
bool isOlder(const std::filesystem::path& entry, Date now, std::chrono::days age);

} // namespace varnic::Folders
