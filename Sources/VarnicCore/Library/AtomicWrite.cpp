#include "VarnicCore/Library/AtomicWrite.h"

#include "VarnicCore/Library/FileDescriptor.h"
#include "VarnicCore/Library/LibraryError.h"

#include <fcntl.h>
#include <stdlib.h> // NOLINT(modernize-deprecated-headers): mkostemps is POSIX's
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>

namespace varnic::AtomicWrite {

namespace {

using std::filesystem::path;

constexpr std::string_view suffix = ".tmp";
constexpr std::string_view placesForRandom = ".XXXXXX";

/// A new file beside the target, removed unless it has been moved away.
class TemporaryFile {
public:
    explicit TemporaryFile(const path& target)
        : path_((target.parent_path() / ".").string() + target.filename().string() + std::string(placesForRandom) +
                std::string(suffix)),
          descriptor_(::mkostemps(path_.data(), static_cast<int>(suffix.size()), O_CLOEXEC)) {
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
        return ::fsync(descriptor_.number()) == 0;
    }

    [[nodiscard]] bool moveTo(const path& target) {
        if (std::rename(path_.c_str(), target.c_str()) != 0) {
            return false;
        }
        path_.clear();
        return true;
    }

private:
    std::string path_;
    FileDescriptor descriptor_;
};

bool forceToDisk(const path& folder) {
    const FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // Some file systems cannot force a folder; they answer EINVAL.
    return descriptor.isOpen() && (::fsync(descriptor.number()) == 0 || errno == EINVAL);
}

} // namespace

void replace(const path& file, std::string_view bytes) {
    TemporaryFile temporary(file);
    if (!temporary.write(bytes) || !temporary.moveTo(file) || !forceToDisk(file.parent_path() / ".")) {
        throw LibraryError::fromErrno("written", file);
    }
}

bool isTemporary(const path& file) {
    return file.filename().string().starts_with('.') && file.extension() == suffix;
}

} // namespace varnic::AtomicWrite
