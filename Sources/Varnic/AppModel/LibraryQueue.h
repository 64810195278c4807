#pragma once

#include "Varnic/SerialQueue.h"
#include "VarnicCore/Library/LibraryLock.h"
#include "VarnicCore/Library/SharedLibrary.h"
#include "VarnicCore/Library/SharedNotes.h"
#include "VarnicCore/Library/SpareNotes.h"

#include <QCoro/QCoroTask>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace varnic {

class LibraryMove;

struct DeadRecording;

/// The library on disk behind a queue of its own, so that the main thread never waits for a disk: what is asked for is
/// done one after another, in order. The destructor does what is still waiting. Main thread.
class LibraryQueue {
public:
    struct Contents {
        std::vector<Note> notes;
        std::size_t unreadable = 0;
        /// Why the library cannot be read; nothing where it can.
        std::optional<std::string> problem;
    };

    /// How saving a note went.
    struct Saved {
        /// Why it is not on disk; nothing where it is.
        std::optional<std::string> problem;
        /// It is kept beside the library then, and taken in at the next start.
        bool isSpared = false;
        /// What somebody else had written into the file meanwhile, now a note of its own.
        std::optional<Note> otherCopy;
    };

    /// What others have done to the library.
    struct Looked {
        std::vector<NoteChange> changes;
        /// Why the library cannot be looked into; nothing where it can.
        std::optional<std::string> problem;
    };

    /// These are called on the queue.
    using WhenSaved = std::function<void(const Saved& saved)>;
    using WhenLooked = std::function<void(Looked looked)>;

    /// Notes that the library does not take are kept in the spare folder meanwhile.
    LibraryQueue(std::filesystem::path root, std::filesystem::path spareFolder)
        : library_(std::move(root)), spareFolder_(std::move(spareFolder)), spare_(spareFolder_) {}

    [[nodiscard]] const std::filesystem::path& root() const { return library_.store().root(); }

    [[nodiscard]] std::filesystem::path notesFolder() const { return library_.store().notesDir(); }

    [[nodiscard]] std::filesystem::path audioFolder(const Uuid& id) const { return library_.store().audioFolder(id); }

    /// Removes what was deleted more than 30 days ago, takes in what was left beside the library or by a synchroniser,
    /// and reads all notes.
    QCoro::Task<Contents> load(Date now);

    /// The recordings of this library that died before they were filed. Throws LibraryError where that cannot be told.
    QCoro::Task<std::vector<std::shared_ptr<DeadRecording>>> deadRecordings();

    /// `base` is the stored version that the note was made from, or null where that is not known.
    void save(SharedNote note, SharedNote base, WhenSaved whenSaved);
    /// Keeps the note as it is beside what is saved next; a failure is no reason not to save that.
    void keepEarlier(Note note);

    [[nodiscard]] bool hasEarlier(const Uuid& id) const { return library_.store().hasEarlier(id); }

    QCoro::Task<std::optional<Note>> earlier(Uuid id, Date now);
    void remove(Uuid id);
    /// Brings a deleted note back; nothing when there is none that can be read.
    QCoro::Task<std::optional<Note>> restore(Uuid id, Date now);
    /// `lock`, if given, is held until the recordings are gone.
    void removeAudio(Uuid id, std::optional<LibraryLock> lock = std::nullopt);

    /// Looks at what others have changed in the files of these names, or in all without names.
    void check(std::optional<std::set<std::string>> names, WhenLooked tell);
    /// The reported changes are known from here on; looks whether the files have changed again since.
    void accept(std::vector<NoteChange> changes, WhenLooked tell);

    /// Where the copy of a library that moves is up to date with all that was asked for before, lets `keepPlace` note
    /// where the library is; from then on the copy is the library, with a spare folder of its own. False where it isn't
    /// up to date, and then nothing has changed. Waits for that; throws what the two throw, and then the library is
    /// where it was.
    bool moveTo(LibraryMove& move, const std::filesystem::path& spareFolder, const std::function<void()>& keepPlace);

    /// Another library is the library from here on, of which nothing is known yet. Waits for what was asked for before.
    void goTo(const std::filesystem::path& root, const std::filesystem::path& spareFolder);

    /// Returns when all that was asked for is on disk.
    void flush() {
        queue_.sync([] {});
    }

private:
    void takeInSpares(Date now);

    SharedLibrary library_;
    std::filesystem::path spareFolder_;
    SpareNotes spare_;
    /// Last, so that its work ends before the library does.
    SerialQueue queue_;
};

} // namespace varnic
