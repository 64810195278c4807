#pragma once

#include "Varnic/SerialQueue.h"
#include "VarnicCore/Library/LibraryStore.h"
#include "VarnicCore/Library/Recovery.h"

#include <QCoro/QCoroTask>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace varnic {

/// The library on disk behind a queue of its own, so that the main thread never waits for a disk: what is asked for is
/// done one after another, in order. The destructor does what is still waiting. Main thread.
class LibraryQueue {
public:
    struct Contents {
        std::vector<Note> notes;
        std::size_t unreadable = 0;
    };

    /// Called on the queue when a note could not be saved.
    using Failed = std::function<void(const Note& note)>;

    explicit LibraryQueue(std::filesystem::path root) : store_(std::move(root)) {}

    [[nodiscard]] const std::filesystem::path& root() const { return store_.root(); }

    [[nodiscard]] std::filesystem::path audioFolder(const Uuid& id) const { return store_.audioFolder(id); }

    /// Removes what was deleted more than 30 days ago, and reads all notes.
    QCoro::Task<Contents> load(Date now);

    /// The recordings of this library that died before they were filed.
    QCoro::Task<std::vector<std::shared_ptr<DeadRecording>>> deadRecordings();

    /// `whenSaved`, if given, is done once the note is on disk.
    void save(Note note, Failed failed, SerialQueue::Work whenSaved = nullptr);
    void remove(Uuid id);
    /// Brings a deleted note back; nothing when there is none that can be read.
    QCoro::Task<std::optional<Note>> restore(Uuid id, Date now);
    void removeAudio(Uuid id);

    /// Returns when all that was asked for is on disk.
    void flush() {
        queue_.sync([] {});
    }

private:
    LibraryStore store_;
    /// Last, so that its work ends before the store does.
    SerialQueue queue_;
};

} // namespace varnic
