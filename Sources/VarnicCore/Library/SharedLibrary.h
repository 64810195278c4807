#pragma once

#include "VarnicCore/Library/LibraryStore.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <unordered_set>
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
/// under the library's lock; what a writer outside of Varnic does in that moment is the only thing that it cannot see.
/// One thread at a time.
class SharedLibrary {
public:
    explicit SharedLibrary(std::filesystem::path root) : store_(std::move(root)) {}

    [[nodiscard]] const LibraryStore& store() const { return store_; }

    /// See LibraryStore.
    void purgeDeleted(int days, Date now) const { store_.purgeDeleted(days, now); }

    std::vector<Note> loadAll(Date now);

    /// Writes the note. Where its file holds what is not known here, that becomes a note of its own first, named
    /// "<title> (other copy)" and without the recording, and is given back; of a version that only adds to one that was
    /// kept so before, that copy takes the additions instead, as another program's change. What cannot be read is set
    /// aside as "<UUID>.json.damaged". A note that was deleted meanwhile comes back, its recording too. Throws
    /// LibraryError or EncodeError, and then nothing is lost.
    std::optional<Note> save(const Note& note, Date now);

    /// Moves the note to the deleted ones, in whatever version. Throws LibraryError.
    void remove(const Uuid& id);

    /// Brings a deleted note back; nothing when there is none that can be read. Throws LibraryError.
    std::optional<Note> restore(const Uuid& id, Date now);

    /// Where the files of these names, or all without names, differ from what is known here. A change is told again
    /// until it has been accepted or saved over. A file that cannot be read tells of none: it may be half written.
    [[nodiscard]] std::vector<NoteChange> changes(const std::optional<std::set<std::string>>& names, Date now) const;

    /// From here on the change is known.
    void accept(const NoteChange& change);

private:
    struct Found;

    [[nodiscard]] static Found look(const std::filesystem::path& file, Date now);
    [[nodiscard]] std::set<std::string> allNames() const;
    [[nodiscard]] bool isKnown(const Uuid& id, const NoteVersion& version) const;
    [[nodiscard]] std::optional<NoteChange> changeOf(const std::filesystem::path& file, Date now) const;
    std::optional<Note> keep(const Found& other, const Note& ours, Date now);
    bool follow(Note copy, const Uuid& original, Date now);
    void bringBack(const Uuid& id, Date now) const;
    void write(const Note& note);

    LibraryStore store_;
    std::unordered_map<Uuid, NoteVersion> known_;
    /// Those of the known notes whose file is gone; one may come back.
    std::unordered_set<Uuid> gone_;
    /// The last other copy made of a note.
    std::unordered_map<Uuid, Uuid> copies_;
};

} // namespace varnic
