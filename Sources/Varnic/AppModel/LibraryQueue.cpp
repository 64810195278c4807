#include "Varnic/AppModel/LibraryQueue.h"

#include "Varnic/Background.h"
#include "VarnicCore/Files/Folders.h"
#include "VarnicCore/Library/LibraryLock.h"
#include "VarnicCore/Library/LibraryMove.h"
#include "VarnicCore/Pipeline/Recovery.h"

#include <exception>

namespace varnic {

namespace {

/// Days that a deleted note can be brought back.
constexpr int keptDeleted = 30;

} // namespace

QCoro::Task<LibraryQueue::Contents> LibraryQueue::load(Date now) {
    const auto read = [this, now] {
        library_.purgeDeleted(keptDeleted, now);
        takeInSpares(now);
        try {
            library_.takeInConflicts(std::nullopt, now);
        } catch (const std::exception&) {
            // Those files count as ones that can't be read; why the folder can't is reported by `loadAll`.
        }
        Contents contents{.notes = library_.loadAll(now)};
        contents.unreadable = library_.store().unreadable().size();
        contents.problem = library_.store().listingProblem();
        return contents;
    };
    return onQueue(queue_, read);
}

void LibraryQueue::takeInSpares(Date now) {
    for (const SpareNote& spare : spare_.all(now)) {
        try {
            library_.takeIn(spare.note, spare.base, now);
            spare_.drop(spare);
        } catch (const std::exception&) {
            // It stays for another start.
        }
    }
}

QCoro::Task<std::vector<std::shared_ptr<DeadRecording>>> LibraryQueue::deadRecordings() {
    using Found = std::vector<std::shared_ptr<DeadRecording>>;
    const auto find = [this] {
        Found found;
        for (DeadRecording& dead : Recovery::find(library_.store())) {
            found.push_back(std::make_shared<DeadRecording>(std::move(dead)));
        }
        return found;
    };
    return onQueue(queue_, find);
}

void LibraryQueue::save(SharedNote note, SharedNote base, WhenSaved whenSaved) {
    queue_.async([this, note = std::move(note), base = std::move(base), whenSaved = std::move(whenSaved)] {
        Saved saved;
        try {
            saved.otherCopy = library_.save(*note, currentDate(), base.get());
            spare_.drop(note->id);
        } catch (const std::exception& error) {
            saved.problem = error.what();
            saved.isSpared = spare_.keep({*note, library_.knownFingerprint(note->id)});
        }
        whenSaved(saved);
    });
}

void LibraryQueue::keepEarlier(Note note) {
    queue_.async([this, note = std::move(note)] {
        try {
            library_.store().keepEarlier(note);
        } catch (const std::exception&) { // saving the note reports a failing disk
        }
    });
}

QCoro::Task<std::optional<Note>> LibraryQueue::earlier(Uuid id, Date now) {
    const auto read = [this, id, now] { return library_.store().earlier(id, now); };
    return onQueue(queue_, read);
}

void LibraryQueue::remove(Uuid id) {
    queue_.async([this, id] {
        spare_.dropAll(id);
        try {
            library_.remove(id);
        } catch (const std::exception&) {
            // It has left the list; a file that can't be moved is found again at the next start.
        }
    });
}

QCoro::Task<std::optional<Note>> LibraryQueue::restore(Uuid id, Date now) {
    const auto bringBack = [this, id, now]() -> std::optional<Note> {
        try {
            return library_.restore(id, now);
        } catch (const std::exception&) {
            return std::nullopt;
        }
    };
    return onQueue(queue_, bringBack);
}

void LibraryQueue::removeAudio(Uuid id, std::optional<LibraryLock> lock) {
    queue_.async([this, id, lock = std::move(lock)] { library_.store().removeAudio(id); });
}

void LibraryQueue::check(std::optional<std::set<std::string>> names, WhenLooked tell) {
    queue_.async([this, names = std::move(names), tell = std::move(tell)] {
        Looked looked;
        try {
            // What was taken in lies in files of other names.
            const bool hasMore = library_.takeInConflicts(names, currentDate());
            looked.changes = library_.changes(hasMore ? std::nullopt : names, currentDate());
        } catch (const std::exception& error) {
            looked.problem = error.what();
        }
        tell(std::move(looked));
    });
}

bool LibraryQueue::moveTo(LibraryMove& move, const std::filesystem::path& spareFolder,
                          const std::function<void()>& keepPlace) {
    std::exception_ptr failure;
    bool isCurrent = false;
    std::optional<LibraryLock> lock;
    queue_.sync([&] {
        try {
            lock = LibraryLock::forWriting(root());
            isCurrent = move.isCurrent();
        } catch (...) {
            failure = std::current_exception();
        }
    });
    if (failure) {
        std::rethrow_exception(failure);
    }
    if (!isCurrent) {
        return false;
    }
    keepPlace();
    move.settle();
    queue_.sync([&] {
        library_.moved(move.target());
        try {
            Folders::moveIfThere(spareFolder_, spareFolder);
        } catch (const LibraryError&) {
            // They stay for a start with the library in its old place.
        }
        spareFolder_ = spareFolder;
        spare_ = SpareNotes(spareFolder);
    });
    return true;
}

void LibraryQueue::goTo(const std::filesystem::path& root, const std::filesystem::path& spareFolder) {
    queue_.sync([&] {
        library_ = SharedLibrary(root);
        spareFolder_ = spareFolder;
        spare_ = SpareNotes(spareFolder);
    });
}

void LibraryQueue::accept(std::vector<NoteChange> changes, WhenLooked tell) {
    std::set<std::string> names;
    for (const NoteChange& change : changes) {
        names.insert(change.version.file.filename().string());
    }
    queue_.async([this, changes = std::move(changes)] {
        for (const NoteChange& change : changes) {
            library_.accept(change);
        }
    });
    check(std::move(names), std::move(tell));
}

} // namespace varnic
