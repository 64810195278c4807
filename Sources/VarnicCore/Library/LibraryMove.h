#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <stdexcept>
#include <stop_token>
#include <string>
#include <vector>

#include <sys/types.h>
#include <time.h>

namespace varnic {

/// Why a library can't be moved; `what()` is the user's sentence.
class LibraryMoveError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The chosen folder holds a library already, which may be used in place of this one.
class OtherLibraryError : public LibraryMoveError {
public:
    using LibraryMoveError::LibraryMoveError;
};

/// Moves a library into another folder, on another disk too: copies it while programs go on to work on it, compares the
/// copy with the original, brings it up to date, and removes the original only once the copy is the library. Until then
/// every failure, also the end of the process, leaves the original as it is; what there is of the copy goes with the
/// object or, after a kill, with the next attempt. One thread at a time.
class LibraryMove {
public:
    /// The part that is done, 0 to 1.
    using Report = std::function<void(double done)>;

    /// Stands in the new folder from the first file on until the copy is the library, and tells the remains of a move
    /// that was killed from a folder of the user's, and from the move of another computer into a synchronised folder.
    static constexpr const char* markName = ".varnic-moving";

    /// Only looks. Throws LibraryMoveError where the library can't go there: the folder has to be one that is empty or
    /// can be made, neither inside the library nor around it, on a disk with room enough. It is an OtherLibraryError
    /// where that is the reason.
    LibraryMove(const std::filesystem::path& from, const std::filesystem::path& to);
    LibraryMove(const LibraryMove&) = delete;
    LibraryMove& operator=(const LibraryMove&) = delete;
    /// Removes the copy unless it is the library.
    ~LibraryMove();

    /// Where the library goes, as an absolute path.
    [[nodiscard]] const std::filesystem::path& target() const { return to_; }

    /// Copies what is there now and compares. Throws LibraryError, LibraryMoveError, and LibraryMoveError soon after a
    /// request through `stop`.
    void copy(const Report& report, const std::stop_token& stop);

    /// Brings the copy up to date with what has changed since, and waits until that is on the disk. Throws as `copy`,
    /// also where another program records or transcribes a call.
    void catchUp();

    /// Whether the copy is as the original is. To be called with LibraryLock::forWriting of the original, which is to
    /// be held until the copy is the library. Waits for no disk. Throws as `catchUp`.
    [[nodiscard]] bool isCurrent() const;

    /// The copy is the library from here on, as far as programs know that.
    void settle();

    /// Removes the original, but for files that aren't in the copy as they are there now, since somebody has written
    /// them meanwhile. How many stay; nothing is thrown. After `settle`.
    std::size_t removeOriginal();

private:
    /// What a file was when it was copied.
    struct Seen {
        mode_t mode = 0;
        off_t size = 0;
        timespec changed{};
        ino_t file = 0;

        [[nodiscard]] bool operator==(const Seen& other) const {
            return mode == other.mode && size == other.size && changed.tv_sec == other.changed.tv_sec &&
                   changed.tv_nsec == other.changed.tv_nsec && file == other.file;
        }
    };

    using Files = std::map<std::filesystem::path, Seen>;

    [[nodiscard]] std::string markText() const;
    void checkPlace() const;
    void checkRoom() const;
    void prepareTarget();
    void removeCopy() const;
    [[nodiscard]] Files list() const;
    static Seen seen(const std::filesystem::path& file);
    [[nodiscard]] bool isCopied(const std::filesystem::path& name, const Seen& entry) const;
    void copyOne(const std::filesystem::path& name, const Seen& entry, const Report& report,
                 const std::stop_token& stop);
    void copyIfThere(const std::filesystem::path& name, const Seen& entry, const Report& report,
                     const std::stop_token& stop);
    void compareOne(const std::filesystem::path& name, const Report& report, const std::stop_token& stop) const;
    void keepTimes(const Files& files) const;
    void forceToDisk() const;
    void expectNobodyWorks() const;

    std::filesystem::path from_;
    std::filesystem::path to_;
    bool madeTarget_ = false;
    bool isPrepared_ = false;
    bool isSettled_ = false;
    /// What the copy holds.
    Files copied_;
};

} // namespace varnic
