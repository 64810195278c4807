#pragma once

#include "VarnicCore/Files/FileDescriptor.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include <sys/types.h>

/// Files that are replaced as a whole. Any thread.
namespace varnic::AtomicWrite {

/// Who may read a file that is new.
enum class Readers {
    /// Its owner alone.
    owner,
    /// Those whom the process's file mode mask leaves; a file that was there keeps its mode.
    asUsual
};

/// The new contents of a file, on the disk, in a temporary file in the same folder, removed with the object unless
/// it has taken the file's place. All throw LibraryError. One thread at a time.
class Prepared {
public:
    /// Writes the bytes and forces them to the disk.
    Prepared(const std::filesystem::path& target, std::string_view bytes, Readers readers = Readers::owner);
    /// The same with what another file holds, for the owner alone.
    static Prepared copyOf(const std::filesystem::path& from, const std::filesystem::path& target);

    Prepared(Prepared&& other) noexcept;
    Prepared(const Prepared&) = delete;
    Prepared& operator=(const Prepared&) = delete;
    Prepared& operator=(Prepared&&) = delete;
    ~Prepared();

    // Each takes the target's place in one step: a failure or a crash at any point leaves the old file or the new one.
    // Once only.

    /// Whatever stands there. It is on the disk when this returns.
    void replace();
    /// False, and nothing is changed, where something stands there. It is on the disk when this returns.
    bool placeNew();

    enum class Exchange {
        /// What stood there is the temporary file now.
        done,
        /// The file system cannot exchange; what stood there is gone.
        overwritten,
        /// Nothing stood there, and nothing is changed.
        nothingThere
    };

    Exchange exchange();
    /// Forces the exchange to the disk.
    void settle() const;

    /// Where the temporary file is.
    [[nodiscard]] const std::filesystem::path& temporary() const { return temporary_; }

private:
    Prepared(std::filesystem::path target, mode_t mode);

    void forceToDisk() const;
    void moveOver();

    std::filesystem::path target_;
    /// Empty once it has moved away.
    std::filesystem::path temporary_;
    FileDescriptor descriptor_;
};

/// Puts the bytes in the file. Throws LibraryError, and then leaves no temporary file.
void replace(const std::filesystem::path& file, std::string_view bytes, Readers readers = Readers::owner);

/// The same with what another file holds, for the owner alone.
void copy(const std::filesystem::path& from, const std::filesystem::path& file);

/// Whether a file of this name is a temporary one of these; a crash can leave it behind.
bool isTemporary(const std::filesystem::path& file);

} // namespace varnic::AtomicWrite
