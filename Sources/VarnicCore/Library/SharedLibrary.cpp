#include "VarnicCore/Library/SharedLibrary.h"

#include "VarnicCore/Files/Folders.h"
#include "VarnicCore/Files/LibraryError.h"
#include "VarnicCore/Library/LibraryLock.h"
#include "VarnicCore/Library/NoteFileReader.h"
#include "VarnicCore/Library/NoteMerge.h"
#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <exception>
#include <string_view>
#include <utility>

namespace varnic {

namespace fs = std::filesystem;

namespace {

using AtomicWrite::Prepared;

/// How often a file may be removed and made by others while a note is about to take its place.
constexpr int attempts = 100;

/// A name beside the file that is free.
fs::path damagedName(const fs::path& file) {
    fs::path name = file.string() + ".damaged";
    for (int i = 2; Folders::isThere(name); ++i) {
        name = fmt::format("{}.damaged-{}", file.string(), i);
    }
    return name;
}

/// Another version of a note as a note of its own. The recording stays with the note that it belongs to.
Note otherCopy(const Note& other, const Uuid& id) {
    Note copy = other;
    copy.id = id;
    copy.title = fmt::format("{} (other copy)", other.displayTitle());
    if (copy.call) {
        copy.call->audioFolder.reset();
        copy.call->tracks.clear();
    }
    return copy;
}

/// An id that only depends on what the note holds, so that several computers that meet with the same conflict make one
/// copy of it.
Uuid idOfContents(const Note& note) {
    const std::string bytes = LibraryStore::encoded(note);
    const std::array<std::uint64_t, 2> halves{fingerprintOf(bytes), fingerprintOf(bytes + note.id.text())};
    Uuid id;
    std::memcpy(id.bytes.data(), halves.data(), id.bytes.size());
    return id;
}

/// Whether a synchroniser has named the file as a version in conflict: "….sync-conflict-20260314-….json", "… (Sam's
/// conflicted copy 2026-03-14).json".
bool isConflictCopy(const fs::path& file) {
    return file.extension() == ".json" && !AtomicWrite::isTemporary(file) &&
           Unicode::lowerCased(file.stem().string()).contains("conflict");
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
    known_.clear();
    for (const auto& [id, version] : store_.versions()) {
        known_[id].version = version;
    }
    return notes;
}

void SharedLibrary::moved(const fs::path& root) {
    for (auto& [id, known] : known_) {
        known.version.file = root / known.version.file.lexically_relative(store_.root());
    }
    store_.moved(root);
}

/// Throws LibraryError where it cannot be found out whether there is anything.
SharedLibrary::Found SharedLibrary::look(const fs::path& file, Date now) {
    NoteFileReader reader;
    try {
        Note note = reader.read(file, now);
        return {true, {file, reader.fingerprint()}, std::move(note)};
    } catch (const std::exception&) {
        return {Folders::isThere(file), {file, 0}, std::nullopt};
    }
}

/// Throws LibraryError where the folder of the notes has been taken away with notes that are known: one that is made in
/// its place would be a second library, and would be in the way when the first one comes back.
void SharedLibrary::expectFolder() const {
    if (!known_.empty() && !Folders::isThere(store_.notesDir())) {
        throw LibraryError("written", store_.notesDir(), std::make_error_code(std::errc::no_such_file_or_directory));
    }
}

bool SharedLibrary::isKnown(const Uuid& id, const NoteVersion& version) const {
    const auto known = known_.find(id);
    return known != known_.end() && known->second.version == version;
}

/// The note's file holds this, as far as is known here.
void SharedLibrary::know(const Note& note, std::string_view bytes) {
    known_[note.id] = {.version = {store_.url(note.id), fingerprintOf(bytes)},
                       .note = std::make_shared<const Note>(note)};
}

void SharedLibrary::bringBack(const Uuid& id, Date now) const {
    try {
        store_.restore(id, now);
    } catch (const LibraryError&) {
        // What cannot be moved stays with the deleted ones.
    }
}

/// Gives a note whose file has another name the one that it is written to and deleted by.
void SharedLibrary::nameById(const Uuid& id) {
    const auto known = known_.find(id);
    const fs::path file = store_.url(id);
    if (known == known_.end() || known->second.version.file == file || Folders::isThere(file)) {
        return;
    }
    Folders::moveIfThere(known->second.version.file, file);
    known->second.version.file = file;
}

/// Both versions in one; nothing where that cannot be.
std::optional<Note> SharedLibrary::merged(const Found& other, const Note& ours, const Note* base) const {
    const auto known = known_.find(ours.id);
    if (known != known_.end() && known->second.note) {
        base = known->second.note.get();
    }
    return other.note && base != nullptr ? NoteMerge::merged(*base, ours, *other.note) : std::nullopt;
}

/// Keeps an unreadable file from being overwritten. A program that writes in place may have been in the middle of it
/// when the file was read: if it is whole by now, it is a version like any other.
std::optional<Note> SharedLibrary::setAside(const fs::path& file, const Note& ours, Date now) {
    const fs::path aside = damagedName(store_.url(ours.id));
    Folders::moveIfThere(file, aside);
    const Found moved = look(aside, now);
    if (!moved.note) {
        return std::nullopt;
    }
    std::optional<Note> copy = keep(moved, ours, now);
    Folders::removeAll(aside);
    return copy;
}

/// Keeps what another program wrote from being overwritten by ours.
std::optional<Note> SharedLibrary::keep(const Found& other, const Note& ours, Date now) {
    if (!other.note) {
        return setAside(other.version.file, ours, now);
    }
    if (NoteMerge::holds(ours, *other.note)) {
        return std::nullopt;
    }
    Note copy = otherCopy(*other.note, Uuid::random());
    if (follow(copy, ours.id, now)) {
        return std::nullopt;
    }
    store_.save(copy);
    know(copy, LibraryStore::encoded(copy));
    copies_[ours.id] = copy.id;
    return copy;
}

/// A program in which the note is edited at the same time writes one version after another, each of which contains the
/// one before: the copy made of the first follows them. To this program too that is a change from outside, so that
/// its unsaved changes to the copy are safe.
bool SharedLibrary::follow(Note copy, const Uuid& original, Date now) {
    const auto last = copies_.find(original);
    if (last == copies_.end()) {
        return false;
    }
    const Found before = look(store_.url(last->second), now);
    if (!before.note || !NoteMerge::holds(copy, *before.note)) {
        return false;
    }
    copy.id = last->second;
    store_.save(copy);
    return true;
}

std::optional<Note> SharedLibrary::save(const Note& note, Date now, const Note* base) {
    const LibraryLock lock = LibraryLock::forWriting(store_.root());
    expectFolder();
    nameById(note.id);
    const fs::path file = store_.url(note.id);
    // On the disk before anything is compared, so that hardly any time is left for others between that and the
    // exchange.
    const std::string bytes = LibraryStore::encoded(note);
    auto prepared = std::make_unique<Prepared>(store_.prepare(note.id, bytes));
    std::optional<Note> copy;
    for (int i = 0; i < attempts; ++i) {
        Found found = look(file, now);
        if (!found.isThere) {
            bringBack(note.id, now);
            found = look(file, now);
        }
        if (found.isThere && !isKnown(note.id, found.version)) {
            if (const auto both = merged(found, note, base)) {
                prepared = std::make_unique<Prepared>(store_.prepare(note.id, LibraryStore::encoded(*both)));
            } else if (auto kept = keep(found, note, now)) {
                copy = std::move(kept);
            }
        }
        if (!found.note) {
            if (prepared->placeNew()) {
                know(note, bytes);
                return copy;
            }
            continue; // somebody has just made it
        }
        const Prepared::Exchange exchange = prepared->exchange();
        if (exchange == Prepared::Exchange::nothingThere) {
            continue;
        }
        if (exchange == Prepared::Exchange::done) {
            const Found replaced = look(prepared->temporary(), now);
            if (replaced.version.fingerprint != found.version.fingerprint) {
                if (auto kept = keep(replaced, note, now)) {
                    copy = std::move(kept);
                }
            }
            prepared->settle();
        }
        know(note, bytes);
        return copy;
    }
    throw LibraryError("written", file, std::make_error_code(std::errc::device_or_resource_busy));
}

std::uint64_t SharedLibrary::knownFingerprint(const Uuid& id) const {
    const auto known = known_.find(id);
    return known == known_.end() ? 0 : known->second.version.fingerprint;
}

void SharedLibrary::takeIn(const Note& note, std::uint64_t base, Date now) {
    const LibraryLock lock = LibraryLock::forWriting(store_.root());
    takeInLocked(note, base, now);
}

void SharedLibrary::takeInLocked(const Note& note, std::uint64_t base, Date now) {
    const fs::path file = store_.url(note.id);
    Found stored = look(file, now);
    if (!stored.isThere) {
        bringBack(note.id, now);
        stored = look(file, now);
    }
    if (stored.note && NoteMerge::holds(*stored.note, note)) {
        return;
    }
    const bool isReplaced = stored.note && (stored.version.fingerprint == base || NoteMerge::holds(note, *stored.note));
    const bool isInTheWay = stored.isThere && !isReplaced;
    const Note taken = isInTheWay ? otherCopy(note, idOfContents(note)) : note;
    // A copy that is there already may have been edited since.
    if (!isInTheWay) {
        store_.save(taken);
    } else if (!Folders::isThere(store_.deletedDir() / taken.id.text())) {
        store_.prepare(taken.id, LibraryStore::encoded(taken)).placeNew();
    }
}

bool SharedLibrary::takeInConflicts(const std::optional<std::set<std::string>>& names, Date now) {
    bool hasAny = false;
    for (const std::string& name : names ? *names : allNames()) {
        const fs::path file = store_.notesDir() / name;
        if (!isConflictCopy(file)) {
            continue;
        }
        const LibraryLock lock = LibraryLock::forWriting(store_.root());
        const Found found = look(file, now);
        // Where the note has no file of its own, the conflict copy is the note.
        if (found.note && store_.url(found.note->id) != file && Folders::isThere(store_.url(found.note->id))) {
            takeInLocked(*found.note, 0, now);
            Folders::removeAll(file);
            hasAny = true;
        }
    }
    return hasAny;
}

void SharedLibrary::remove(const Uuid& id) {
    const LibraryLock lock = LibraryLock::forWriting(store_.root());
    expectFolder();
    nameById(id);
    store_.remove(id);
    known_[id].isGone = true;
}

std::optional<Note> SharedLibrary::restore(const Uuid& id, Date now) {
    const LibraryLock lock = LibraryLock::forWriting(store_.root());
    store_.restore(id, now);
    Found found = look(store_.url(id), now);
    if (found.note) {
        known_[id] = {.version = found.version, .note = std::make_shared<const Note>(*found.note)};
    }
    return std::move(found.note);
}

std::set<std::string> SharedLibrary::allNames() const {
    std::set<std::string> names;
    for (const fs::path& file : Folders::list(store_.notesDir())) {
        names.insert(file.filename().string());
    }
    for (const auto& [id, known] : known_) {
        names.insert(known.version.file.filename().string());
    }
    return names;
}

/// The note that a file which is gone held: the one whose name it bears, or that was found in it.
std::optional<Uuid> SharedLibrary::idOf(const fs::path& goneFile) const {
    if (const auto id = Uuid::parse(goneFile.stem().string())) {
        return id;
    }
    const auto known =
        std::ranges::find_if(known_, [&](const auto& one) { return one.second.version.file == goneFile; });
    return known == known_.end() ? std::nullopt : std::optional(known->first);
}

std::optional<NoteChange> SharedLibrary::changeOf(const fs::path& file, Date now) const {
    Found found = look(file, now);
    if (found.isThere && !found.note) {
        return std::nullopt;
    }
    const std::optional<Uuid> id = found.note ? found.note->id : idOf(file);
    const auto known = id ? known_.find(*id) : known_.end();
    if (known == known_.end() || known->second.isGone) {
        return found.note ? std::optional(NoteChange{*id, found.version, std::move(found.note)}) : std::nullopt;
    }
    const NoteVersion& version = known->second.version;
    if (version == found.version) {
        return std::nullopt;
    }
    if (version.file != file) {
        // Of several files with one id the one that was there first counts, unless it has been renamed.
        if (!found.note || Folders::isThere(version.file)) {
            return std::nullopt;
        }
    } else if (!found.isThere && file != store_.url(*id) && Folders::isThere(store_.url(*id))) {
        return std::nullopt; // renamed: reported under the other name
    }
    return NoteChange{*id, found.version, std::move(found.note)};
}

std::vector<NoteChange> SharedLibrary::changes(const std::optional<std::set<std::string>>& names, Date now) const {
    Folders::expectAccess(store_.notesDir());
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
    // A folder that goes away while it is looked through takes no notes with it.
    Folders::expectAccess(store_.notesDir());
    return changes;
}

void SharedLibrary::accept(const NoteChange& change) {
    Known& known = known_[change.id];
    if (change.note) {
        known = {.version = change.version, .note = std::make_shared<const Note>(*change.note)};
    } else {
        known.isGone = true;
    }
}

} // namespace varnic
