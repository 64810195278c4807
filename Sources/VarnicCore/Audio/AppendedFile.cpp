#include "VarnicCore/Audio/AppendedFile.h"

#include "VarnicCore/Files/LibraryError.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <utility>

namespace varnic {

namespace {

/// False on failure, with the reason in errno; part of the bytes may then be written.
bool writeAt(int file, std::int64_t offset, std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::pwrite(file, bytes.data(), bytes.size(), offset);
        if (count < 0 && errno != EINTR) {
            return false;
        }
        if (count > 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(count));
            offset += count;
        }
    }
    return true;
}

} // namespace

AppendedFile AppendedFile::create(const std::filesystem::path& path) {
    ::unlink(path.c_str());
    FileDescriptor descriptor(
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!descriptor.isOpen()) {
        throw LibraryError::fromErrno("made", path);
    }
    return {path, std::move(descriptor)};
}

AppendedFile::AppendedFile(std::filesystem::path path, FileDescriptor descriptor)
    : path_(std::move(path)), descriptor_(std::move(descriptor)) {}

void AppendedFile::append(std::span<const std::uint8_t> piece) {
    requireName();
    if (!writeAt(descriptor_.number(), size_, piece)) {
        const int reason = errno;
        // Where even this fails, the next piece is written over the remains.
        [[maybe_unused]] const int cut = ::ftruncate(descriptor_.number(), size_);
        errno = reason;
        throw LibraryError::fromErrno("written", path_);
    }
    size_ += static_cast<std::int64_t>(piece.size());
}

void AppendedFile::overwrite(std::int64_t offset, std::span<const std::uint8_t> bytes) {
    if (!writeAt(descriptor_.number(), offset, bytes)) {
        throw LibraryError::fromErrno("written", path_);
    }
}

void AppendedFile::sync() {
    requireName();
    // Some file systems cannot force a file; they answer EINVAL.
    if (::fdatasync(descriptor_.number()) != 0 && errno != EINVAL) {
        throw LibraryError::fromErrno("written", path_);
    }
}

void AppendedFile::requireName() const {
    struct stat ours{};
    if (::fstat(descriptor_.number(), &ours) != 0) {
        return;
    }
    if (ours.st_nlink == 0) {
        throw LibraryError("written", path_, std::make_error_code(std::errc::no_such_file_or_directory));
    }
    struct stat there{};
    if (::stat(path_.c_str(), &there) == 0 && there.st_ino == ours.st_ino && there.st_dev == ours.st_dev) {
        return;
    }
    std::error_code ignored;
    std::filesystem::create_directories(path_.parent_path(), ignored);
    const std::string name = "/proc/self/fd/" + std::to_string(descriptor_.number());
    if (::linkat(AT_FDCWD, name.c_str(), AT_FDCWD, path_.c_str(), AT_SYMLINK_FOLLOW) != 0) {
        throw LibraryError::fromErrno("written", path_);
    }
}

} // namespace varnic
