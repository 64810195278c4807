#pragma once

#include "VarnicCore/Files/FileDescriptor.h"

#include <filesystem>
#include <optional>
#include <utility>

#include <sys/types.h>

namespace varnic {

/// Several programs may work on one library at the same time. None of them owns it: whoever writes a note holds the
/// library for the moment in which it compares the file with what it knows and replaces it (see SharedLibrary), so that
/// nobody waits for a program that is merely open. Reading needs no lock, since files are replaced as a whole.
///
/// The locks are the system's advisory ones (flock): they end with the process, however that ends. Where the file
/// system has no locks, everyone is granted one. Any thread.
class LibraryLock {
public:
    /// The right to replace notes; to be held for a moment. Waits for it, and throws LibraryError where another program
    /// keeps it for longer than `patience`.
    static LibraryLock forWriting(const std::filesystem::path& root);

    /// Seconds; a write takes milliseconds.
    static constexpr int patience = 10;

    /// Marks the one desktop program that has the library open, with its process's id in "running.lock", as long as the
    /// object lives; nothing while another program has it. Throws LibraryError where the file cannot be made.
    static std::optional<LibraryLock> forApplication(const std::filesystem::path& root);

    /// The right to transcribe a call, for as long as that takes; nothing while somebody else has it. It tells a call
    /// that is still being transcribed from one whose program died. The audio folder is the lock; without one
    /// everyone gets the right.
    static std::optional<LibraryLock> forCall(const std::filesystem::path& audioFolder);

    /// The process that holds the application's lock, if one does.
    static std::optional<pid_t> application(const std::filesystem::path& root);

private:
    explicit LibraryLock(FileDescriptor descriptor) : descriptor_(std::move(descriptor)) {}

    FileDescriptor descriptor_;
};

} // namespace varnic
