#pragma once

#include "VarnicCore/Files/FileDescriptor.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace varnic {

using Bytes = std::vector<std::uint8_t>;

/// A new file, for its owner only, that grows by whole pieces: a piece that cannot be written leaves nothing behind, so
/// that what follows when there is room again stands where it belongs. One thread at a time. All operations throw
/// LibraryError.
class AppendedFile {
public:
    /// In place of what is at the path.
    static AppendedFile create(const std::filesystem::path& path);

    void append(std::span<const std::uint8_t> piece);

    /// Writes over bytes that are there. A few bytes within one block go to the disk all or none.
    void overwrite(std::int64_t offset, std::span<const std::uint8_t> bytes);

    /// Forces what was written to the disk.
    void sync();

    [[nodiscard]] std::int64_t size() const { return size_; }

private:
    AppendedFile(std::filesystem::path path, FileDescriptor descriptor);

    /// A file whose folder was removed takes all writes, and is gone with the program: that is an error. One whose
    /// folder was moved away is there, but not where it is looked for: it is given its place again.
    void requireName() const;

    std::filesystem::path path_;
    FileDescriptor descriptor_;
    std::int64_t size_ = 0;
};

} // namespace varnic
