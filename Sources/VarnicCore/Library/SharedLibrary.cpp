#include "VarnicCore/Library/SharedLibrary.h"

#include "VarnicCore/Library/Folders.h"
#include "VarnicCore/Library/LibraryError.h"
#include "VarnicCore/Library/LibraryLock.h"
#include "VarnicCore/Library/NoteFileReader.h"

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <utility>

namespace varnic {

namespace fs = std::filesystem;

namespace {

bool isThere(const fs::path& file) {
    std::error_code ignored;
    return fs::symlink_status(file, ignored).type() != fs::file_type::not_found;
}

/// A name beside the file that is free.
fs::path damagedName(const fs::path& file) {
    fs::path name = file.string() + ".damaged";
    for (int i = 2; isThere(name); ++i) {
        name = fmt::format("{}.damaged-{}", file.string(), i);
    }
    return name;
}

/// Another program's version as a note of its own. The recording stays with the note that it belongs to.
Note otherCopy(const Note& other) {
    Note copy = other;
    copy.id = Uuid::random();
    copy.title = fmt::format("{} (other copy)", other.displayTitle());
    if (copy.call) {
        copy.call->audioFolder.reset();
        copy.call->tracks.clear();
    }
    return copy;
}

/// Whether all that a reader sees of the block is in the other: one that was typed further, for instance.
bool holds(const Block& block, Block less) {
    if (!block.text.contains(less.text) || !block.back.contains(less.back)) {
        return false;
    }
    less.text = block.text;
    less.back = block.back;
    return block == less;
}

/// Whether nothing would be lost if the one note stood in place of the other.
bool holds(const Note& note, const Note& less) {
    return note.title == less.title && note.call == less.call &&
           std::ranges::all_of(less.blocks, [&note](const Block& block) {
               const auto same = std::ranges::find(note.blocks, block.id, &Block::id);
               return same != note.blocks.end() && holds(*same, block);
           });
}

} // namespace

/// What is in a file.
struct SharedLibrary::Found {
    bool isThere = false;
    NoteVersion version;
    /// Nothing where it cannot be read.
    std::optional<Note> note;
};

std::vector<Note> SharedLibrary::loadAll(Date now) {
    std::vector<Note> notes = store_.loadAll(now);
    known_ = store_.versions();
    gone_.clear();
    return notes;
}

SharedLibrary::Found SharedLibrary::look(const fs::path& file, Date now) {
    NoteFileReader reader;
    try {
        Note note = reader.read(file, now);
        return {true, {file, reader.fingerprint()}, std::move(note)};
    } catch (const std::exception&) {
        return {varnic::isThere(file), {file, 0}, std::nullopt};
    }
}

bool SharedLibrary::isKnown(const Uuid& id, const NoteVersion& version) const {
    const auto known = known_.find(id);
    return known != known_.end() && known->second == version;
}

void SharedLibrary::write(const Note& note) {
    const std::string bytes = LibraryStore::encoded(note);
    store_.write(note.id, bytes);
    known_[note.id] = {store_.url(note.id), fingerprintOf(bytes)};
    gone_.erase(note.id);
}

void SharedLibrary::bringBack(const Uuid& id, Date now) const {
    try {
        store_.restore(id, now);
    } catch (const LibraryError&) { // NOLINT(bugprone-empty-catch)
        // What cannot be moved stays with the deleted ones.
    }
}

/// Saves what another program wrote from being overwritten by ours.
std::optional<Note> SharedLibrary::keep(const Found& other, const Note& ours, Date now) {
    if (!other.note) {
        Folders::moveIfThere(other.version.file, damagedName(other.version.file));
        return std::nullopt;
    }
    if (*other.note == ours) {
        return std::nullopt;
    }
    Note copy = otherCopy(*other.note);
    if (follow(copy, ours.id, now)) {
        return std::nullopt;
    }
    write(copy);
    copies_[ours.id] = copy.id;
    return copy;
}

/// Who edits a note elsewhere while it is edited here writes one version after another, each of which holds the one
/// before: the copy that the first has made follows them. To this program too that is a change from outside, so that
/// what it has not saved of the copy yet is safe.
bool SharedLibrary::follow(Note copy, const Uuid& original, Date now) {
    const auto last = copies_.find(original);
    if (last == copies_.end()) {
        return false;
    }
    const Found before = look(store_.url(last->second), now);
    if (!before.note || !holds(copy, *before.note)) {
        return false;
    }
    copy.id = last->second;
    store_.save(copy);
    return true;
}

std::optional<Note> SharedLibrary::save(const Note& note, Date now) {
    const LibraryLock lock = LibraryLock::forWriting(store_.root());
    Found found = look(store_.url(note.id), now);
    if (!found.isThere) {
        bringBack(note.id, now);
        found = look(store_.url(note.id), now);
    }
    std::optional<Note> copy;
    if (found.isThere && !isKnown(note.id, found.version)) {
        copy = keep(found, note, now);
    }
    write(note);
    return copy;
}

void SharedLibrary::remove(const Uuid& id) {
    const LibraryLock lock = LibraryLock::forWriting(store_.root());
    store_.remove(id);
    gone_.insert(id);
}

std::optional<Note> SharedLibrary::restore(const Uuid& id, Date now) {
    const LibraryLock lock = LibraryLock::forWriting(store_.root());
    store_.restore(id, now);
    Found found = look(store_.url(id), now);
    if (found.note) {
        known_[id] = found.version;
        gone_.erase(id);
    }
    return std::move(found.note);
}

std::set<std::string> SharedLibrary::allNames() const {
    std::set<std::string> names;
    for (const fs::path& file : Folders::entries(store_.notesDir())) {
        names.insert(file.filename().string());
    }
    for (const auto& [id, version] : known_) {
        names.insert(version.file.filename().string());
    }
    return names;
}

std::optional<NoteChange> SharedLibrary::changeOf(const fs::path& file, Date now) const {
    Found found = look(file, now);
    if (found.isThere && !found.note) {
        return std::nullopt;
    }
    // A file that is gone can only be that of the note whose name it bears.
    const std::optional<Uuid> id = found.note ? found.note->id : Uuid::parse(file.stem().string());
    const auto known = id ? known_.find(*id) : known_.end();
    if (known == known_.end() || gone_.contains(*id)) {
        return found.note ? std::optional(NoteChange{*id, found.version, std::move(found.note)}) : std::nullopt;
    }
    // Of several files with one id that counts which was there first.
    if (known->second.file != file || known->second == found.version) {
        return std::nullopt;
    }
    return NoteChange{*id, found.version, std::move(found.note)};
}

std::vector<NoteChange> SharedLibrary::changes(const std::optional<std::set<std::string>>& names, Date now) const {
    std::vector<NoteChange> changes;
    for (const std::string& name : names ? *names : allNames()) {
        const fs::path file = store_.notesDir() / name;
        if (file.extension() != ".json") {
            continue;
        }
        if (auto change = changeOf(file, now)) {
            changes.push_back(std::move(*change));
        }
    }
    return changes;
}

void SharedLibrary::accept(const NoteChange& change) {
    if (change.note) {
        known_[change.id] = change.version;
        gone_.erase(change.id);
    } else {
        gone_.insert(change.id);
    }
}

} // namespace varnic
