#include "VarnicCore/Files/Folders.h"

#include "VarnicCore/Files/LibraryError.h"

#include <fcntl.h>
#include <stdio.h> // renameat2 is not in <cstdio>
#include <sys/stat.h>

#include <cerrno>
#include <utility>

namespace varnic::Folders {

namespace fs = std::filesystem;

namespace {

bool isFolder(const fs::path& entry) {
    struct stat status{};
    return ::stat(entry.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// False on failure, with the reason in errno.
bool moveOnOneDisk(const fs::path& from, const fs::path& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return false;
    }
    // The file system has no such operation.
    if (isThere(to)) {
        errno = EEXIST;
        return false;
    }
    return ::rename(from.c_str(), to.c_str()) == 0;
}

void copyThenRemove(const fs::path& from, const fs::path& to) {
    if (isThere(to)) {
        throw LibraryError("moved", from, std::make_error_code(std::errc::file_exists));
    }
    try {
        fs::copy(from, to, fs::copy_options::recursive | fs::copy_options::copy_symlinks);
    } catch (const fs::filesystem_error& error) {
        removeAll(to);
        throw LibraryError("moved", from, error.code());
    }
    removeAll(from);
}

} // namespace

void make(const fs::path& folder) {
    if (isFolder(folder)) {
        return;
    }
    if (folder.has_parent_path()) {
        make(folder.parent_path());
    }
    if (::mkdir(folder.c_str(), S_IRWXU) == 0) {
        return;
    }
    const int failure = errno;
    if (!isFolder(folder)) { // which another process may have made meanwhile
        throw LibraryError("made", folder, {failure == EEXIST ? ENOTDIR : failure, std::generic_category()});
    }
}

bool isThere(const fs::path& entry) {
    std::error_code failure;
    const fs::file_type type = fs::symlink_status(entry, failure).type();
    if (type == fs::file_type::none) {
        throw LibraryError("read", entry, failure);
    }
    return type != fs::file_type::not_found;
}

void expectAccess(const fs::path& folder) {
    std::error_code failure;
    if (!fs::exists(fs::status(folder / ".", failure))) {
        throw LibraryError("read", folder, failure);
    }
}

std::vector<fs::path> list(const fs::path& folder) {
    std::vector<fs::path> found;
    std::error_code failure;
    for (fs::directory_iterator entry(folder, failure); !failure && entry != fs::directory_iterator();
         entry.increment(failure)) {
        found.push_back(entry->path());
    }
    if (failure == std::errc::no_such_file_or_directory) {
        return {};
    }
    if (failure) {
        throw LibraryError("read", folder, failure);
    }
    // A folder that may be listed may still not be entered, and then each of its files would seem to be at fault.
    expectAccess(folder);
    return found;
}

std::vector<fs::path> entries(const fs::path& folder) {
    try {
        return list(folder);
    } catch (const LibraryError&) {
        return {};
    }
}

void moveIfThere(const fs::path& from, const fs::path& to) {
    if (!isThere(from) || moveOnOneDisk(from, to)) {
        return;
    }
    if (errno != EXDEV) {
        throw LibraryError::fromErrno("moved", from);
    }
    copyThenRemove(from, to);
}

void removeAll(const fs::path& entry) {
    std::error_code ignored;
    fs::remove_all(entry, ignored);
}

bool isOlder(const fs::path& entry, Date now, std::chrono::days age) {
    struct stat status{};
    if (::lstat(entry.c_str(), &status) != 0) {
        return false;
    }
    const auto limit = now - age;
    const auto second = std::chrono::floor<std::chrono::seconds>(limit);
    const std::chrono::nanoseconds rest = limit - second;
    return std::pair(second.time_since_epoch().count(), rest.count()) >
           std::pair(status.st_mtim.tv_sec, status.st_mtim.tv_nsec);
}

} // namespace varnic::Folders
