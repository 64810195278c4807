#pragma once

#include "VarnicCore/Library/LibraryStore.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace varnic {

/// What somebody else did to a note's file.
struct NoteChange {
    Uuid id;
    NoteVersion version;
    /// As it is now; nothing where the file is gone.
    std::optional<Note> note;
};

/// A library on which other programs work too: another Varnic, a file synchroniser, an editor. It remembers of each
/// note the version that was last read or written here, and no version that it does not know is ever overwritten or
/// lost: where somebody else has changed a file meanwhile, saving keeps both. Every write looks, decides and writes
/// under the library's lock, and where the file system can exchange two files, it looks at what came out too: only a
/// writer outside of Varnic that has the very file open in that moment goes unseen. One thread at a time.
class SharedLibrary {
public:
    explicit SharedLibrary(std::filesystem::path root) : store_(std::move(root)) {}

    [[nodiscard]] const LibraryStore& store() const { return store_; }

    /// See LibraryStore.
    void purgeDeleted(int days, Date now) const { store_.purgeDeleted(days, now); }

    std::vector<Note> loadAll(Date now);

    /// Writes the note. Where its file holds what is not known here, both are brought together if it was changed in
    /// other places (see NoteMerge); to this program that is another program's change. Else the other version becomes a
    /// note of its own first, named "<title> (other copy)" and without the recording, and is returned; if it only adds
    /// to an earlier such copy, that copy takes the additions instead. What cannot be read is set
    /// aside as "<UUID>.json.damaged". A note that was deleted meanwhile comes back, its recording too. A file of
    /// another name is renamed after the note's id. A folder of notes that was taken away is not made anew. Throws
    /// LibraryError or EncodeError, and then nothing is lost.
    /// A version that was only loaded is not in memory: `base`, if not null, is the note as it was loaded.
    std::optional<Note> save(const Note& note, Date now, const Note* base = nullptr);

    /// The same library lies there from here on, file by file as it was.
    void moved(const std::filesystem::path& root);

    /// The fingerprint of what is known of the note; 0 where nothing is.
    [[nodiscard]] std::uint64_t knownFingerprint(const Uuid& id) const;

    /// Brings in a version of a note that was made elsewhere from the version with the fingerprint `base`
    /// (0 where that is not known): in the place of the stored one if that is the base or is in it, else as a note of
    /// its own, which then is the same one wherever it is made. Throws LibraryError or EncodeError.
    void takeIn(const Note& note, std::uint64_t base, Date now);

    /// Takes in the files, of these names or all without names, that a synchroniser has put beside notes' files for
    /// versions in conflict, and removes them; whether there were any. Throws LibraryError, and then nothing is lost.
    bool takeInConflicts(const std::optional<std::set<std::string>>& names, Date now);

    /// Moves the note to the deleted ones, in whatever version. Throws LibraryError.
    void remove(const Uuid& id);

    /// Brings a deleted note back; nothing when there is none that can be read. Throws LibraryError.
    std::optional<Note> restore(const Uuid& id, Date now);

    /// Where the files of these names, or all without names, differ from what is known here. A change is reported again
    /// until it is accepted or saved over. A file that cannot be read counts as unchanged: it may be half written.
    /// Throws LibraryError where the folder of the notes is gone or cannot be looked into: that removes no note.
    [[nodiscard]] std::vector<NoteChange> changes(const std::optional<std::set<std::string>>& names, Date now) const;

    /// From here on the change is known.
    void accept(const NoteChange& change);

private:
    struct Found;

    /// What is known of a note.
    struct Known {
        NoteVersion version;
        /// The note in that version, if it was written or changed in this run.
        std::shared_ptr<const Note> note;
        /// The file is gone; it may come back.
        bool isGone = false;
    };

    [[nodiscard]] static Found look(const std::filesystem::path& file, Date now);
    [[nodiscard]] std::set<std::string> allNames() const;
    [[nodiscard]] std::optional<Uuid> idOf(const std::filesystem::path& goneFile) const;
    void expectFolder() const;
    [[nodiscard]] bool isKnown(const Uuid& id, const NoteVersion& version) const;
    [[nodiscard]] std::optional<Note> merged(const Found& other, const Note& ours, const Note* base) const;
    [[nodiscard]] std::optional<NoteChange> changeOf(const std::filesystem::path& file, Date now) const;
    std::optional<Note> setAside(const std::filesystem::path& file, const Note& ours, Date now);
    std::optional<Note> keep(const Found& other, const Note& ours, Date now);
    bool follow(Note copy, const Uuid& original, Date now);
    void takeInLocked(const Note& note, std::uint64_t base, Date now);
    void bringBack(const Uuid& id, Date now) const;
    void nameById(const Uuid& id);
    void know(const Note& note, std::string_view bytes);

    LibraryStore store_;
    std::unordered_map<Uuid, Known> known_;
    /// The last other copy made of a note.
    std::unordered_map<Uuid, Uuid> copies_;
};

} // namespace varnic
