#pragma once

#include "VarnicCore/Files/FileDescriptor.h"

#include <filesystem>
#include <optional>
#include <set>
#include <string>

namespace varnic {

/// Tells which files of a folder were written, moved or removed, in place or not, by whatever program. A watch on the
/// folder itself would not tell of a file that is written over. Blind where the system refuses or on a network file
/// system that tells nothing. One thread at a time.
class FolderWatch {
public:
    explicit FolderWatch(const std::filesystem::path& folder);

    /// Becomes readable when there is news; -1 for a blind watch.
    [[nodiscard]] int descriptor() const { return descriptor_.number(); }

    /// The names of the files with news; nothing where some were missed, so that any may have changed. Never waits.
    [[nodiscard]] std::optional<std::set<std::string>> news();

    /// The folder, or one that it lies in, has been moved, removed or unmounted, as far as the news goes: nothing more
    /// will be told. Another one may stand in its place by now.
    [[nodiscard]] bool isOver() const { return isOver_; }

private:
    FileDescriptor descriptor_;
    bool isOver_ = false;
};

} // namespace varnic
