#include "VarnicCore/Library/AtomicWrite.h"

#include "VarnicCore/Library/FileDescriptor.h"
#include "VarnicCore/Library/LibraryError.h"
#include "VarnicCore/Models/Uuid.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>
#include <system_error>

namespace varnic::AtomicWrite {

namespace {

using std::filesystem::path;

constexpr std::string_view suffix = ".tmp";
constexpr mode_t forOwner = 0600;

/// A name that is short enough also where the target's is as long as a name can be.
std::string besides(const path& target) {
    return (target.parent_path() / ("." + Uuid::random().text() + std::string(suffix))).string();
}

bool forceToDisk(const path& folder) {
    const FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // Some file systems cannot force a folder; they answer EINVAL.
    return descriptor.isOpen() && (::fsync(descriptor.number()) == 0 || errno == EINVAL);
}

/// A new file beside the target, removed unless it has been moved away.
class TemporaryFile {
public:
    /// The process's file mode mask takes away from the mode.
    TemporaryFile(const path& target, mode_t mode)
        : path_(besides(target)), descriptor_(::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode)) {
        if (!descriptor_.isOpen()) {
            throw LibraryError::fromErrno("written", target);
        }
    }

    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    ~TemporaryFile() {
        if (!path_.empty()) {
            ::unlink(path_.c_str());
        }
    }

    /// Each of these is false on failure, with the reason in errno.
    [[nodiscard]] bool write(std::string_view bytes) const {
        while (!bytes.empty()) {
            const ssize_t count = ::write(descriptor_.number(), bytes.data(), bytes.size());
            if (count < 0 && errno != EINTR) {
                return false;
            }
            bytes.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
        }
        return true;
    }

    [[nodiscard]] std::error_code fillFrom(const path& other) const {
        std::error_code failure;
        std::filesystem::copy_file(other, path_, std::filesystem::copy_options::overwrite_existing, failure);
        return failure;
    }

    [[nodiscard]] bool setMode(mode_t mode) const { return ::fchmod(descriptor_.number(), mode) == 0; }

    /// Forces it to the disk, moves it to the target and forces that to the disk.
    [[nodiscard]] bool moveTo(const path& target) {
        if (::fsync(descriptor_.number()) != 0 || std::rename(path_.c_str(), target.c_str()) != 0) {
            return false;
        }
        path_.clear();
        return forceToDisk(target.parent_path() / ".");
    }

private:
    std::string path_;
    FileDescriptor descriptor_;
};

} // namespace

void replace(const path& file, std::string_view bytes, Readers readers) {
    constexpr mode_t forAll = 0666;
    constexpr mode_t modeBits = 0777;
    TemporaryFile temporary(file, readers == Readers::owner ? forOwner : forAll);
    struct stat old{};
    const bool keepsMode = readers == Readers::asUsual && ::stat(file.c_str(), &old) == 0;
    if ((keepsMode && !temporary.setMode(old.st_mode & modeBits)) || !temporary.write(bytes) ||
        !temporary.moveTo(file)) {
        throw LibraryError::fromErrno("written", file);
    }
}

void copy(const path& from, const path& file) {
    TemporaryFile temporary(file, forOwner);
    if (const std::error_code failure = temporary.fillFrom(from)) {
        throw LibraryError("written", file, failure);
    }
    if (!temporary.moveTo(file)) {
        throw LibraryError::fromErrno("written", file);
    }
}

bool isTemporary(const path& file) {
    return file.filename().string().starts_with('.') && file.extension() == suffix;
}

} // namespace varnic::AtomicWrite
