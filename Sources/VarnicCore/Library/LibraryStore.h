#pragma once

#include "VarnicCore/Files/AtomicWrite.h"
#include "VarnicCore/Files/LibraryError.h"
#include "VarnicCore/Models/Note.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <sys/types.h>

namespace varnic {

/// A note file that could not be read, and why in one sentence.
struct UnreadableFile {
    std::filesystem::path path;
    std::string reason;
};

/// Identifies the contents of a note file.
struct NoteVersion {
    std::filesystem::path file;
    std::uint64_t fingerprint = 0;

    bool operator==(const NoteVersion&) const = default;
};

/// The one object that touches the library on disk, whole notes at a time and without a cache:
///
///     notes/<UUID>.json         a note
///     audio/<UUID>/             the audio folder of a call
///     Deleted/<UUID>/note.json  a deleted note
///     Deleted/<UUID>/audio/     its audio folder
///     Earlier/<UUID>.json       a call's note as it was before its last new transcript or summary
///
/// A deleted note takes its earlier version along.
///
/// Files and folders that it makes are for their owner only. One thread at a time.
class LibraryStore {
public:
    /// Makes the folders for notes and audio where they are missing. A failure shows when something is saved.
    explicit LibraryStore(std::filesystem::path root);

    /// Whether the folder holds a library: a note in it at least, or both folders that the constructor makes. Throws
    /// LibraryError where that can't be seen.
    static bool isIn(const std::filesystem::path& folder);

    [[nodiscard]] const std::filesystem::path& root() const { return root_; }

    /// The same library lies there from here on.
    void moved(const std::filesystem::path& root);

    /// The files that the last `loadAll` could not read. They stay on disk as they are.
    [[nodiscard]] const std::vector<UnreadableFile>& unreadable() const { return unreadable_; }

    /// Why the last `loadAll` could not list the notes, in one sentence; nothing where it could, or where there is no
    /// folder of notes yet.
    [[nodiscard]] const std::optional<std::string>& listingProblem() const { return listingProblem_; }

    /// What the last `loadAll` found of each note.
    [[nodiscard]] const std::unordered_map<Uuid, NoteVersion>& versions() const { return versions_; }

    [[nodiscard]] std::filesystem::path notesDir() const { return root_ / "notes"; }

    [[nodiscard]] std::filesystem::path audioDir() const { return root_ / "audio"; }

    [[nodiscard]] std::filesystem::path deletedDir() const { return root_ / "Deleted"; }

    [[nodiscard]] std::filesystem::path earlierDir() const { return root_ / "Earlier"; }

    /// The file of a note and the audio folder of a call; neither touches the disk.
    [[nodiscard]] std::filesystem::path url(const Uuid& id) const;
    [[nodiscard]] std::filesystem::path audioFolder(const Uuid& id) const;

    /// All notes that can be read, newest first by creation and in order of their file names where that is equal. `now`
    /// stands for a missing date of creation. None when they cannot be listed (see `listingProblem`). Of several files
    /// with the same id the one that is named by it counts, or else the first; the others go to `unreadable`, since
    /// saving either of two such notes would overwrite the other.
    std::vector<Note> loadAll(Date now);

    /// The note in the file of this id; nothing when it cannot be read.
    [[nodiscard]] std::optional<Note> load(const Uuid& id, Date now) const;

    /// Writes the note's file as a whole: after a failure or a crash the old one or the new one stands. A damaged file
    /// that `loadAll` found in its place is set aside first, as "<UUID>.json.damaged". Throws LibraryError or
    /// EncodeError.
    void save(const Note& note);

    /// A note in its stored form, on the disk and ready to take the place of its file. A library that was removed is
    /// created again, but not in the place of one whose disk was unmounted. Throws LibraryError.
    [[nodiscard]] AtomicWrite::Prepared prepare(const Uuid& id, std::string_view bytes) const;

    /// The bytes that `save` would write. Throws EncodeError.
    [[nodiscard]] static std::string encoded(const Note& note);

    /// Keeps the note as the earlier version of the one with its id, in place of another. Throws LibraryError or
    /// EncodeError.
    void keepEarlier(const Note& note) const;

    /// Whether an earlier version is kept.
    [[nodiscard]] bool hasEarlier(const Uuid& id) const;

    /// The earlier version; nothing where there is none that can be read.
    [[nodiscard]] std::optional<Note> earlier(const Uuid& id, Date now) const;

    /// Moves the note's file and audio folder, where they exist, to the deleted ones, in place of an older entry.
    /// Throws LibraryError.
    void remove(const Uuid& id) const;

    /// Moves a deleted note and its audio folder back, never over another one, and reads the note; nothing when it
    /// cannot be read. Throws LibraryError.
    std::optional<Note> restore(const Uuid& id, Date now) const;

    /// The deleted notes that can be read, last deleted first.
    [[nodiscard]] std::vector<Note> deleted(Date now) const;

    /// Removes what was deleted more than so many days before `now`, and the remains of writes that a crash cut short.
    void purgeDeleted(int days, Date now) const;

    /// Removes the audio folder; a failure is ignored.
    void removeAudio(const Uuid& id) const;

    /// The bytes of the files directly inside the audio folder; 0 without a folder.
    [[nodiscard]] std::int64_t audioSize(const Uuid& id) const;

private:
    std::filesystem::path root_;
    /// The disk that the library was on when it was opened.
    std::optional<dev_t> disk_;
    std::vector<UnreadableFile> unreadable_;
    std::optional<std::string> listingProblem_;
    std::unordered_map<Uuid, NoteVersion> versions_;
};

} // namespace varnic
