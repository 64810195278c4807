#include "VarnicCore/Library/LibraryLock.h"

#include "VarnicCore/Files/LibraryError.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <string>
#include <thread>

namespace varnic {

namespace fs = std::filesystem;

namespace {

using namespace std::chrono_literals;

fs::path runningFile(const fs::path& root) {
    return root / "running.lock";
}

/// False only while somebody else holds it.
bool tryLock(const FileDescriptor& file) {
    return ::flock(file.number(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

} // namespace

/// The folder of the notes is the lock, so that nothing is left in the library.
LibraryLock LibraryLock::forWriting(const fs::path& root) {
    const fs::path folder = root / "notes";
    FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(patience);
    while (descriptor.isOpen() && !tryLock(descriptor)) {
        if (std::chrono::steady_clock::now() > giveUp) {
            throw LibraryError("written", folder, std::make_error_code(std::errc::timed_out));
        }
        std::this_thread::sleep_for(1ms);
    }
    // Without a folder there is nothing to guard; the write itself reports that.
    return LibraryLock(std::move(descriptor));
}

std::optional<LibraryLock> LibraryLock::forCall(const fs::path& audioFolder) {
    FileDescriptor descriptor(::open(audioFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor.isOpen() && !tryLock(descriptor)) {
        return std::nullopt;
    }
    return LibraryLock(std::move(descriptor));
}

std::optional<LibraryLock> LibraryLock::forApplication(const fs::path& root) {
    const fs::path file = runningFile(root);
    FileDescriptor descriptor(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR));
    if (!descriptor.isOpen()) {
        throw LibraryError::fromErrno("made", file);
    }
    if (!tryLock(descriptor)) {
        return std::nullopt;
    }
    const std::string process = std::to_string(::getpid()) + "\n";
    if (::ftruncate(descriptor.number(), 0) != 0 ||
        ::pwrite(descriptor.number(), process.data(), process.size(), 0) != static_cast<ssize_t>(process.size())) {
        throw LibraryError::fromErrno("written", file);
    }
    return LibraryLock(std::move(descriptor));
}

std::optional<pid_t> LibraryLock::application(const fs::path& root) {
    const FileDescriptor descriptor(::open(runningFile(root).c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    // A lock for readers, so that two who ask at once don't take each other for the holder.
    if (!descriptor.isOpen() || ::flock(descriptor.number(), LOCK_SH | LOCK_NB) == 0 || errno != EWOULDBLOCK) {
        return std::nullopt;
    }
    std::array<char, 32> text{};
    const ssize_t count = ::pread(descriptor.number(), text.data(), text.size(), 0);
    pid_t process = 0;
    const auto read = std::from_chars(text.data(), text.data() + std::max<ssize_t>(count, 0), process);
    return read.ec == std::errc() ? std::optional(process) : std::nullopt;
}

} // namespace varnic
