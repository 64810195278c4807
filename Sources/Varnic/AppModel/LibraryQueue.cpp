#include "Varnic/AppModel/LibraryQueue.h"

#include "Varnic/Background.h"

#include <exception>

namespace varnic {

namespace {

/// Days that a deleted note can be brought back.
constexpr int keptDeleted = 30;

} // namespace

QCoro::Task<LibraryQueue::Contents> LibraryQueue::load(Date now) {
    const auto read = [this, now] {
        library_.purgeDeleted(keptDeleted, now);
        Contents contents{library_.loadAll(now)};
        contents.unreadable = library_.store().unreadable().size();
        return contents;
    };
    return onQueue(queue_, read);
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

void LibraryQueue::save(Note note, WhenSaved whenSaved) {
    queue_.async([this, note = std::move(note), whenSaved = std::move(whenSaved)] {
        Saved saved;
        try {
            saved.otherCopy = library_.save(note, currentDate());
        } catch (const std::exception& error) {
            saved.problem = error.what();
        }
        whenSaved(saved);
    });
}

void LibraryQueue::keepEarlier(Note note) {
    queue_.async([this, note = std::move(note)] {
        try {
            library_.store().keepEarlier(note);
        } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): saving the note tells of a failing disk
        }
    });
}

QCoro::Task<std::optional<Note>> LibraryQueue::earlier(Uuid id, Date now) {
    const auto read = [this, id, now] { return library_.store().earlier(id, now); };
    return onQueue(queue_, read);
}

void LibraryQueue::remove(Uuid id) {
    queue_.async([this, id] {
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

void LibraryQueue::removeAudio(Uuid id) {
    queue_.async([this, id] { library_.store().removeAudio(id); });
}

void LibraryQueue::check(std::optional<std::set<std::string>> names, Changes tell) {
    queue_.async([this, names = std::move(names), tell = std::move(tell)] {
        if (auto changes = library_.changes(names, currentDate()); !changes.empty()) {
            tell(std::move(changes));
        }
    });
}

void LibraryQueue::accept(std::vector<NoteChange> changes, Changes tell) {
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
