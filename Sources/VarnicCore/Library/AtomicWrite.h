#pragma once

#include <filesystem>
#include <string_view>

/// Files that are replaced as a whole. Any thread.
namespace varnic::AtomicWrite {

/// Who may read a file that is new.
enum class Readers {
    /// Its owner alone.
    owner,
    /// Those whom the process's file mode mask leaves; a file that was there keeps its mode.
    asUsual
};

/// Puts the bytes in the file: writes a temporary file in the same folder, forces it to the disk, moves it over the old
/// one and forces the folder to the disk. A failure or a crash at any point leaves the old file or the new one. Throws
/// LibraryError, and then leaves no temporary file.
void replace(const std::filesystem::path& file, std::string_view bytes, Readers readers = Readers::owner);

/// The same with what another file holds, for who may read that.
void copy(const std::filesystem::path& from, const std::filesystem::path& file);

/// Whether a file of this name is a temporary one of these; a crash can leave it behind.
bool isTemporary(const std::filesystem::path& file);

} // namespace varnic::AtomicWrite
