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
        store_.purgeDeleted(keptDeleted, now);
        Contents contents{store_.loadAll(now)};
        contents.unreadable = store_.unreadable().size();
        return contents;
    };
    return onQueue(queue_, read);
}

QCoro::Task<std::vector<std::shared_ptr<DeadRecording>>> LibraryQueue::deadRecordings() {
    using Found = std::vector<std::shared_ptr<DeadRecording>>;
    const auto find = [this] {
        Found found;
        for (DeadRecording& dead : Recovery::find(store_)) {
            found.push_back(std::make_shared<DeadRecording>(std::move(dead)));
        }
        return found;
    };
    return onQueue(queue_, find);
}

void LibraryQueue::save(Note note, Failed failed, SerialQueue::Work whenSaved) {
    queue_.async([this, note = std::move(note), failed = std::move(failed), whenSaved = std::move(whenSaved)] mutable {
        try {
            store_.save(note);
            if (whenSaved) {
                whenSaved();
            }
        } catch (const std::exception&) {
            failed(note);
        }
    });
}

void LibraryQueue::remove(Uuid id) {
    queue_.async([this, id] {
        try {
            store_.remove(id);
        } catch (const std::exception&) {
            // It has left the list; a file that can't be moved is found again at the next start.
        }
    });
}

QCoro::Task<std::optional<Note>> LibraryQueue::restore(Uuid id, Date now) {
    const auto bringBack = [this, id, now]() -> std::optional<Note> {
        try {
            return store_.restore(id, now);
        } catch (const std::exception&) {
            return std::nullopt;
        }
    };
    return onQueue(queue_, bringBack);
}

void LibraryQueue::removeAudio(Uuid id) {
    queue_.async([this, id] { store_.removeAudio(id); });
}

} // namespace varnic
