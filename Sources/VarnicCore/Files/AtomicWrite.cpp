#include "VarnicCore/Files/AtomicWrite.h"

#include "VarnicCore/Files/Folders.h"
#include "VarnicCore/Files/LibraryError.h"
#include "VarnicCore/Models/Uuid.h"

#include <fcntl.h>
#include <stdio.h> // renameat2 is not in <cstdio>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <utility>
#include <vector>

namespace varnic::AtomicWrite {

namespace {

using std::filesystem::path;

constexpr std::string_view suffix = ".tmp";
constexpr mode_t forOwner = 0600;
/// Bytes that are copied at once.
constexpr std::size_t pieceSize = 1UL << 20U;

/// A name that is short enough also where the target's is as long as a name can be.
path besides(const path& target) {
    return target.parent_path() / ("." + Uuid::random().text() + std::string(suffix));
}

/// False on failure, with the reason in errno.
bool writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(file, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) {
            return false;
        }
        bytes.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
    return true;
}

/// Whether the file system does not support this kind of rename, after a failure of it.
bool isUnknownToFileSystem() {
    return errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP;
}

} // namespace

Prepared::Prepared(path target, mode_t mode)
    : target_(std::move(target)), temporary_(besides(target_)),
      descriptor_(::open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode)) {
    if (!descriptor_.isOpen()) {
        throw LibraryError::fromErrno("written", target_);
    }
}

Prepared::Prepared(const path& target, std::string_view bytes, Readers readers)
    : Prepared(target, readers == Readers::owner ? forOwner : mode_t{0666}) {
    constexpr mode_t modeBits = 0777;
    struct stat old{};
    const bool keepsMode = readers == Readers::asUsual && ::stat(target.c_str(), &old) == 0;
    if ((keepsMode && ::fchmod(descriptor_.number(), old.st_mode & modeBits) != 0) ||
        !writeAll(descriptor_.number(), bytes)) {
        throw LibraryError::fromErrno("written", target);
    }
    forceToDisk();
}

Prepared Prepared::copyOf(const path& from, const path& target) {
    // The standard library's copying calls a full disk a faulty one.
    const FileDescriptor source(::open(from.c_str(), O_RDONLY | O_CLOEXEC));
    if (!source.isOpen()) {
        throw LibraryError::fromErrno("read", from);
    }
    Prepared prepared(target, forOwner);
    std::vector<char> piece(pieceSize);
    ssize_t count = 0;
    while ((count = ::read(source.number(), piece.data(), piece.size())) > 0) {
        if (!writeAll(prepared.descriptor_.number(), {piece.data(), static_cast<std::size_t>(count)})) {
            throw LibraryError::fromErrno("written", target);
        }
    }
    if (count < 0) {
        throw LibraryError::fromErrno("read", from);
    }
    prepared.forceToDisk();
    return prepared;
}

Prepared::Prepared(Prepared&& other) noexcept
    : target_(std::move(other.target_)), temporary_(std::exchange(other.temporary_, path())),
      descriptor_(std::move(other.descriptor_)) {}

Prepared::~Prepared() {
    if (!temporary_.empty()) {
        ::unlink(temporary_.c_str());
    }
}

void Prepared::forceToDisk() const {
    if (::fsync(descriptor_.number()) != 0) {
        throw LibraryError::fromErrno("written", target_);
    }
}

void Prepared::moveOver() {
    if (::rename(temporary_.c_str(), target_.c_str()) != 0) {
        throw LibraryError::fromErrno("written", target_);
    }
    temporary_.clear();
    settle();
}

void Prepared::settle() const {
    const path folder = target_.parent_path() / ".";
    const FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // Some file systems cannot sync a folder; they answer EINVAL.
    if (!descriptor.isOpen() || (::fsync(descriptor.number()) != 0 && errno != EINVAL)) {
        throw LibraryError::fromErrno("written", target_);
    }
}

void Prepared::replace() {
    moveOver();
}

bool Prepared::placeNew() {
    if (::renameat2(AT_FDCWD, temporary_.c_str(), AT_FDCWD, target_.c_str(), RENAME_NOREPLACE) == 0) {
        temporary_.clear();
        settle();
        return true;
    }
    if (errno == EEXIST) {
        return false;
    }
    if (!isUnknownToFileSystem()) {
        throw LibraryError::fromErrno("written", target_);
    }
    if (Folders::isThere(target_)) {
        return false;
    }
    moveOver();
    return true;
}

Prepared::Exchange Prepared::exchange() {
    if (::renameat2(AT_FDCWD, temporary_.c_str(), AT_FDCWD, target_.c_str(), RENAME_EXCHANGE) == 0) {
        return Exchange::done;
    }
    if (errno == ENOENT && !Folders::isThere(target_)) {
        return Exchange::nothingThere;
    }
    if (!isUnknownToFileSystem()) {
        throw LibraryError::fromErrno("written", target_);
    }
    moveOver();
    return Exchange::overwritten;
}

void replace(const path& file, std::string_view bytes, Readers readers) {
    Prepared(file, bytes, readers).replace();
}

void copy(const path& from, const path& file) {
    Prepared::copyOf(from, file).replace();
}

bool isTemporary(const path& file) {
    return file.filename().string().starts_with('.') && file.extension() == suffix;
}

} // namespace varnic::AtomicWrite
