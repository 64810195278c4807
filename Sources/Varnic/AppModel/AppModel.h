#pragma once

#include "Varnic/AppModel/APIKey.h"
#include "Varnic/AppModel/AppSettings.h"
#include "Varnic/AppModel/ChangedNotes.h"
#include "Varnic/AppModel/Desktop.h"
#include "Varnic/AppModel/LibraryQueue.h"
#include "Varnic/AppModel/LibrarySection.h"
#include "Varnic/AppModel/RollUps.h"
#include "Varnic/AppModel/ToastMessage.h"
#include "Varnic/LoopExecutor.h"
#include "VarnicCore/AISummariser/ServerModels.h"
#include "VarnicCore/Audio/CaptureSource.h"
#include "VarnicCore/Editor/NoteHistory.h"
#include "VarnicCore/Library/Flashcards.h"
#include "VarnicCore/Library/SharedNotes.h"
#include "VarnicCore/Library/Todos.h"
#include "VarnicCore/Models/Note.h"
#include "VarnicCore/Models/Region.h"
#include "VarnicCore/Pipeline/CallActions.h"
#include "VarnicCore/Pipeline/ProcessingStage.h"
#include "VarnicCore/Pipeline/Recording.h"

#include <QCoro/QCoroTask>
#include <QObject>
#include <QProperty>

#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

class QTimer;

namespace varnic {

class AISummariser;
class CallProcessor;
class HTTPTransport;
class LibraryMove;
class LibraryWatch;
class LiveCapture;
class RecordingController;
class RecordingMarkFile;
class Transcriber;
struct AppPlaces;
struct CallImport;
struct DigestContext;

/// The one object that windows, menus and commands talk to. It owns the notes in memory, the library on disk, the
/// settings and the recorder; nothing else in this program writes a note, and what other programs write into the
/// library is noticed once it is loaded. Main thread; flows that take long suspend and let it go on. The destructor
/// ends what is being transcribed, saves, and waits for that; a flow whose model is gone ends where it is.
class AppModel : public QObject {
    Q_OBJECT

public:
    explicit AppModel(AppPlaces places, QObject* parent = nullptr);
    AppModel(const AppModel&) = delete;
    AppModel& operator=(const AppModel&) = delete;
    ~AppModel() override;

    // What views show: observable properties, except for the notes, which have `notesChanged`.

    /// Every note of the library, in no order.
    [[nodiscard]] const SharedNotes& notes() const { return notes_; }

    QProperty<LibrarySection> section{LibrarySection::all};
    /// The note that is open.
    QProperty<std::optional<Uuid>> selection;
    /// What is searched for.
    QProperty<std::string> query;
    QProperty<std::optional<ToastMessage>> toast;
    /// The block that the editor is to focus.
    QProperty<std::optional<Uuid>> focusBlock;
    /// About note files that cannot be read, or about a library that cannot be looked into.
    QProperty<std::optional<std::string>> loadProblem;
    /// The library cannot be looked into at the moment, so what is not shown may well be there; `load` tries again.
    QProperty<bool> isUnreadable{false};
    /// Recordings are being brought in or wait for that; see `importFiles`.
    QProperty<bool> isImporting{false};
    /// The notes that are being transcribed or summarised.
    QProperty<std::map<Uuid, ProcessingStage>> processing;
    /// The notes that an AI is summarising.
    QProperty<std::set<Uuid>> aiRunning;
    /// How the last try of an AI failed.
    QProperty<std::map<Uuid, std::string>> aiError;
    /// No speech model fits the language of the call that is recorded, so that it has to wait for its transcript.
    QProperty<bool> lacksModel{false};
    QProperty<bool> showTranscript{false};
    QProperty<bool> showConsent{false};
    QProperty<bool> showSetup{false};
    /// The note whose cards are studied.
    QProperty<std::optional<Uuid>> studyDeck;

    /// A request to the player to jump.
    struct Seek {
        Uuid note;
        /// Seconds into the call.
        double time = 0;

        bool operator==(const Seek&) const = default;
    };

    QProperty<std::optional<Seek>> seek;

    // What the flows work with; tests and demonstrations replace it.

    AppSettings settings;
    Desktop desktop;
    std::shared_ptr<KeyStore> keys;
    /// The key for the provider of the settings, from `keys`.
    APIKey apiKey{settings, keys};
    std::shared_ptr<HTTPTransport> transport;
    /// The Anthropic API, or a gateway to it.
    std::string anthropicURL{AISettings::anthropicBaseURL};
    std::function<std::shared_ptr<const Transcriber>()> makeTranscriber;
    std::function<std::shared_ptr<CaptureSource>()> makeCapture;
    /// The sides to record, where the sound system allows it.
    WantedSides wantedSides;
    /// Where the user lives.
    Region region = Region::user();
    /// While true nothing is written to disk and no hotkey is registered.
    bool isDemo = false;

    [[nodiscard]] RecordingController& recorder() { return *recorder_; }

    [[nodiscard]] const std::filesystem::path& dataDirectory() const { return store_.root(); }

    /// What came of an attempt to have the library elsewhere.
    struct LibraryMoved {
        bool isMoved = false;
        /// The user's sentence: why it stayed, or what was left behind; empty where all went well.
        std::string sentence;
        /// It stayed because another library is there, which `useLibrary` takes.
        bool isOtherThere = false;
    };

    /// Moves the library with all that it holds into a folder that is empty or can be made, and remembers that place
    /// for this program and varnic-cli. One can go on working meanwhile, and record, which ends the move. Nothing is
    /// lost however it ends. Not while a call is recorded, transcribed or summarised, nor where VARNIC_DATA_DIR says
    /// where the library is.
    QCoro::Task<LibraryMoved> moveLibrary(std::filesystem::path folder);

    /// Has the library that is in the folder in place of this one, which stays where and as it is, and remembers that
    /// for this program and varnic-cli: for a second computer with a synchronised folder, and to find one that was lost
    /// sight of. Refused when `whyNotLeaveLibrary` says why.
    QCoro::Task<LibraryMoved> useLibrary(std::filesystem::path folder);

    /// Ends a move as soon as it can; its result says so.
    void cancelLibraryMove() { stopMove_.request_stop(); }

    /// Which part of the library has been copied, 0 to 1, while it moves.
    QProperty<std::optional<double>> libraryMove;

    /// Why another library can't take the place of this one now, the user's sentence; nothing where it can.
    [[nodiscard]] std::optional<std::string> whyNotLeaveLibrary() const;

    /// Why the library can't be moved now: also where it can't be looked into.
    [[nodiscard]] std::optional<std::string> whyNotMoveLibrary() const;

    [[nodiscard]] std::filesystem::path audioFolder(const Uuid& id) const { return store_.audioFolder(id); }

    // Lists, which follow from the notes as they are.

    /// The notes of the section, pinned ones first, else newest first.
    [[nodiscard]] std::vector<const Note*> visibleNotes() const;
    /// Whether the section shows the note.
    [[nodiscard]] bool isVisible(const Note& note) const;
    /// The note, or null; valid until it changes.
    [[nodiscard]] const Note* note(std::optional<Uuid> id) const;
    /// The note that a running recording will become.
    [[nodiscard]] std::optional<Uuid> liveNoteID() const;

    /// Valid until the next call.
    [[nodiscard]] const std::vector<OpenTodo>& openTodos() const { return rollUps_.openTodos(); }

    /// As of now. Valid until the next call.
    [[nodiscard]] const std::vector<Flashcards::Deck>& decks() const { return rollUps_.decks(currentDate()); }

    [[nodiscard]] int dueCardCount() const;

    // Loading, editing, saving.

    /// Reads the library, watches it from here on, and files recordings that died. Once more after it could not be
    /// looked into.
    QCoro::Task<> load();
    /// The first part of `load`.
    QCoro::Task<> readLibrary();

    struct Recovered {
        /// Recordings that became calls, which wait for their transcripts now.
        std::vector<Recording> calls;
        /// Recordings without any audio, which are among the deleted notes now.
        int soundless = 0;
        /// Calls that a program filed, but did not live to transcribe. Their problem says so.
        std::vector<Uuid> unwritten;
        /// Why it is unknown what is to be recovered; nothing where it is known.
        std::optional<std::string> problem;
    };

    /// The second part of `load`.
    QCoro::Task<Recovered> recoverRecordings();
    /// Changes a note; one that comes out the same is not saved.
    void update(Uuid id, bool saveNow, const std::function<void(Note&)>& change);

    /// How an edit is to be undone and saved.
    struct Edit {
        EditKind kind = EditKind::structure;
        /// Where the caret was, for undo to put it back.
        std::optional<TextPlace> caret;
        bool saveNow = false;
    };

    /// As `update`, for what the user does to title and blocks: it can be undone. The change gives where the caret
    /// goes, if it knows; so does this.
    std::optional<TextPlace> edit(Uuid id, const Edit& edit,
                                  const std::function<std::optional<TextPlace>(Note&)>& change);
    /// Takes the note's last edit back, or makes it again; gives where the caret goes. What has come into the note
    /// otherwise since stays.
    std::optional<TextPlace> undo(Uuid id);
    std::optional<TextPlace> redo(Uuid id);
    [[nodiscard]] bool canUndo(Uuid id) const;
    [[nodiscard]] bool canRedo(Uuid id) const;

    Uuid newNote(std::string title = {}, std::vector<Block> blocks = {}, Date created = currentDate());
    /// Moves the note to the deleted ones, but never that of a running recording.
    void remove(Uuid id);
    /// Brings a deleted note back, in the library's form or else as given.
    QCoro::Task<> restore(Note note);
    /// Writes what is pending and what could not be written before, and returns when it is on disk, or the toast says
    /// that it is not.
    void flushSaves();

    /// The notes that are not on disk as they are here, in no order.
    [[nodiscard]] std::vector<Uuid> unsavedNotes() const;

    /// Why the note is not on disk as it is here, as the last failure reported; nothing where it is.
    [[nodiscard]] std::optional<std::string> saveProblem(Uuid id) const {
        return unsaved_.contains(id) ? std::optional(saveProblem_) : std::nullopt;
    }

    /// Whether a note that could not be saved is kept beside the library until the next start.
    [[nodiscard]] bool isSpared(Uuid id) const {
        const auto unsaved = unsaved_.find(id);
        return unsaved != unsaved_.end() && unsaved->second.isSpared;
    }

    void flash(ToastMessage message);
    void selectFirstIfNeeded();

    void togglePin(Uuid id);
    void toggleTodo(Uuid note, Uuid block);
    void grade(Uuid note, Uuid card, Flashcards::Grade grade);
    void renameThem(Uuid id, std::string name);

    // Keys of AI providers; see `apiKey` for what can be shown of them.

    /// Whether a key for the provider of the settings is known to be there.
    [[nodiscard]] bool hasKey() const { return apiKey.status.value().state == KeyState::found; }

    /// Saves the key, or removes it where there is nothing but blanks; a toast where that fails.
    QCoro::Task<> setKey(std::string value);
    /// What asks the AI provider of the settings with the key that was read; null where none is to be asked.
    [[nodiscard]] std::unique_ptr<AISummariser> aiSummariser(const KeyReading& key) const;

    /// Asks the compatible server of the settings for its models, with the key if there is one.
    QCoro::Task<ServerAnswer> askServer();

    // Recording.

    /// What a press of the record button means now.
    void toggleRecording();
    void consentAccepted();
    QCoro::Task<> startRecording(bool allowWithoutThem);
    /// Ends the recording and files the call; its id, or nothing when none ran.
    QCoro::Task<std::optional<Uuid>> stopRecording();
    /// Ends the recording and files what there is, without transcribing.
    QCoro::Task<> stopRecordingForQuit();
    void discardRecording();

    // Calls.

    /// Transcribes the recording and files the call in the place of its note. With a mark it is not filed yet: the mark
    /// goes once the call is on disk, and a call that is cancelled goes with its recording. A call that another program
    /// is transcribing is left to that, as a toast says.
    QCoro::Task<> process(Recording recording, std::shared_ptr<RecordingMarkFile> mark = nullptr);
    /// The call, or nothing where a toast says why there is none or where it was cancelled.
    QCoro::Task<std::optional<Uuid>> importCall(CallImport call);
    QCoro::Task<> importAudio(std::filesystem::path file);
    /// Makes a note of a Markdown file; a toast says where that fails or something had to be simplified.
    QCoro::Task<> importMarkdown(std::filesystem::path file);
    /// Brings recordings and Markdown files in one after another, since each takes all the processor that it gets, and
    /// behind those that wait already.
    QCoro::Task<> importFiles(std::vector<std::filesystem::path> files);
    QCoro::Task<> chooseImport();
    /// Transcribes the call anew. Where the recording of a side that has lines is missing, they stay: a toast says so,
    /// or the call's problem if it has none.
    QCoro::Task<> retranscribe(Uuid id);
    QCoro::Task<> runAI(Uuid id);
    void useLocalSummary(Uuid id);
    /// Whether the call is kept as it was before its last new transcript or summary, by this program or another.
    [[nodiscard]] bool hasEarlier(Uuid id) const;
    /// Brings the earlier transcript and summary back, with what the user has written since. What stands there now is
    /// the earlier version from then on. Nothing happens without one, or while the call is being worked on.
    QCoro::Task<> bringBackEarlier(Uuid id);
    /// Not while the call is being transcribed.
    void removeAudio(Uuid id);
    /// The recordings of a call that are on disk. The note must be a call.
    [[nodiscard]] CallTracks existingTracks(const Note& note) const;
    /// What is on disk of a call; nothing for another note. Looks there, so not to be asked with every key.
    [[nodiscard]] CallFiles callFiles(const Note& note) const;
    /// What may be done with the call of a note now that has these files.
    [[nodiscard]] CallActions callActions(const Note& note, const CallFiles& files) const;

    /// Ends what is being transcribed or summarised as soon as it can. A call without a transcript says so; what is
    /// started later runs.
    void cancelProcessing();

    // Taking notes elsewhere.

    QCoro::Task<> exportAudio(Uuid id);
    QCoro::Task<> exportNote(Uuid id, ExportFormat format);
    /// Throws what the writer throws.
    void exportFile(Uuid id, ExportFormat format, const std::filesystem::path& file) const;
    [[nodiscard]] ExportOptions exportOptions() const;
    /// Writes what could not be saved into a folder of the user's choice, as Markdown; whether all of it is there.
    QCoro::Task<bool> saveCopiesElsewhere();
    void copyEmail(Uuid id);
    [[nodiscard]] std::optional<std::string> mailtoURL(Uuid id) const;
    void openInMail(Uuid id) const;
    void copyHeadsUp();
    /// Copies what names the note, and a moment of its call in seconds, to other programs; see NoteAddress.
    void copyLink(Uuid id, std::optional<double> time = std::nullopt);
    /// Shows the note that an address names, at its moment; a toast where it names none.
    void openAddress(std::string_view text);

Q_SIGNALS:
    /// The library lies in another folder now.
    void libraryMoved(const std::filesystem::path& folder);
    /// Notes have changed, come or gone.
    void notesChanged(const ChangedNotes& changed = {});

private:
    void scheduleSave(Uuid id, bool immediately, SerialQueue::Work whenSaved = nullptr);
    /// `whenSaved`, if given, is done off the main thread once the note is on disk.
    void saveNow(Uuid id, SerialQueue::Work whenSaved = nullptr);
    void takeSaved(Uuid id, std::uint64_t edit, const std::string& title, const LibraryQueue::Saved& saved);
    [[nodiscard]] std::optional<Uuid> selectionWithout(Uuid id) const;
    void forget(Uuid id);
    [[nodiscard]] LibraryQueue::WhenLooked onMain();
    void takeLook(LibraryQueue::Looked looked);
    void takeChanges(std::vector<NoteChange> changes);
    void showUnreadable(std::optional<std::string> problem);
    void saveUnsaved();
    bool takeChange(const NoteChange& change);
    void setStage(Uuid id, std::optional<ProcessingStage> stage);
    [[nodiscard]] CallProcessor processor() const;
    [[nodiscard]] DigestContext context(const CallRecord& call) const;
    [[nodiscard]] DigestContext context(Date startedAt, std::string themName, std::string source) const;
    void showPlaceholder(Uuid id, std::string title, CallRecord call);
    [[nodiscard]] bool keepLiveLines(Note& finished, const std::optional<std::string>& loss) const;
    [[nodiscard]] std::vector<Uuid> takeUnwritten();
    QCoro::Task<> bringBack(Uuid id);
    void file(Note finished, const std::optional<Note>& before, std::shared_ptr<RecordingMarkFile> mark);
    void removeAudioIfNotKept(Uuid id);
    bool keepEarlier(Uuid id);
    static ToastMessage callIsBusy();
    [[nodiscard]] ToastMessage undoable(Uuid id, std::string text, std::string symbol);
    using RestoreEdit = std::optional<NoteHistory::Restored> (NoteHistory::*)(const Note&, Date);
    std::optional<TextPlace> restoreEdit(Uuid id, RestoreEdit step);
    void editCall(Uuid id, const std::function<void(CallRecord&)>& change);
    bool switchTo(LibraryMove& move);
    void saveAllBeforeLeaving();
    void keepPlace(const std::filesystem::path& folder);
    void forgetLibrary();

    SharedNotes notes_;
    /// Of the notes that were edited since the program's start.
    std::map<Uuid, NoteHistory> histories_;
    mutable RollUps rollUps_{notes_, region};
    /// Runs what other threads report; outlives the queue of the library.
    LoopExecutor loop_;
    LibraryQueue store_;
    std::unique_ptr<RecordingController> recorder_;
    /// Saves that wait for the user to pause.
    std::map<Uuid, std::unique_ptr<QTimer>> saveTasks_;

    struct Unsaved {
        /// The last edit, counted over all notes.
        std::uint64_t edit = 0;
        bool isSpared = false;
        /// The note as it was before, if it is known.
        SharedNote base;
    };

    /// The notes that are not on disk yet as they are here.
    std::map<Uuid, Unsaved> unsaved_;
    std::uint64_t edits_ = 0;
    /// Why the last save that failed did so.
    std::string saveProblem_;
    /// Notes whose earlier version is on disk or about to be; others may have one too, see `hasEarlier`.
    std::set<Uuid> keptEarlier_;
    std::unique_ptr<LibraryWatch> watch_;
    bool isRead_ = false;
    /// Recordings that died are to be filed, which could not be done yet.
    bool isRecoveryDue_ = false;
    std::deque<std::filesystem::path> waitingImports_;
    /// Whether the environment says where the library is.
    bool isPlaceFixed_ = false;
    std::stop_source stopMove_;
    /// Stops the flows that began since the last cancellation.
    std::stop_source stopProcessing_;
    /// The capture of the last recording, for devices that are changed meanwhile.
    std::weak_ptr<LiveCapture> liveCapture_;
    std::vector<QPropertyNotifier> settingWatchers_;
};

} // namespace varnic
