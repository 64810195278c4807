#include "Varnic/AppModel/AppModel.h"

#include "Varnic/Background.h"
#include "VarnicCore/Audio/TranscriberError.h"
#include "VarnicCore/Editor/NoteEditor.h"
#include "VarnicCore/Files/Folders.h"
#include "VarnicCore/Library/LibraryLock.h"
#include "VarnicCore/Library/RecordingMark.h"
#include "VarnicCore/Library/TrackFiles.h"
#include "VarnicCore/Models/CallProblem.h"
#include "VarnicCore/Models/PlaceholderBlocks.h"
#include "VarnicCore/Pipeline/CallProcessor.h"
#include "VarnicCore/Summariser/ExtractiveSummariser.h"

#include <QPointer>

#include <algorithm>
#include <iterator>
#include <utility>

namespace varnic {

namespace {

namespace fs = std::filesystem;

/// Whether a block shows anything; a table does with empty cells too.
bool holdsSomething(const Block& block) {
    return !block.text.empty() || !block.back.empty() || block.kind == BlockKind::table ||
           block.kind == BlockKind::divider;
}

/// What the user wrote into a call's note while it was being made.
std::vector<Block> userBlocks(const Note& note) {
    std::vector<Block> blocks;
    std::ranges::copy_if(note.blocks, std::back_inserter(blocks),
                         [](const Block& block) { return holdsSomething(block) && !isPlaceholder(block); });
    return blocks;
}

/// Makes the finished note take over what the user did to its placeholder. `before` is that as it was when the call
/// began to be transcribed: a title that stands unchanged was the program's.
void takeOver(const Note& placeholder, const std::optional<Note>& before, Note& finished) {
    std::ranges::move(userBlocks(placeholder), std::back_inserter(finished.blocks));
    finished.pinned = placeholder.pinned;
    if (!placeholder.title.empty() && (!before || placeholder.title != before->title)) {
        finished.title = placeholder.title;
    }
    if (placeholder.call) {
        NoteEditor::renameThem(placeholder.call->themName, finished);
    }
}

/// Has the call say why it has no new transcript; what its recording lost stays in there.
void tell(const std::string& problem, CallRecord& call) {
    call.problem = CallProblem::joined(problem, CallProblem::lossIn(call.problem));
}

/// Whether a side that the transcript has lines of has no recording to transcribe them from again.
bool lacksTrack(const CallRecord& call, const CallTracks& tracks) {
    const std::vector<Speaker> there = tracks.speakers();
    return std::ranges::any_of(
        call.segments, [&there](const Segment& line) { return std::ranges::find(there, line.speaker) == there.end(); });
}

/// A note that was edited while its call was transcribed anew: the edits stay, and the rest is as if they had been
/// there before.
Note withTranscript(Note edited, const Note& result, const Note& before) {
    if (!edited.call) {
        return edited;
    }
    edited.call->segments = result.call->segments;
    edited.call->language = result.call->language;
    edited.call->problem = result.call->problem;
    if (result.call->digest && result.call->digest != before.call->digest) {
        NoteEditor::apply(*result.call->digest, edited, false, currentDate());
        const std::string name = std::exchange(edited.call->themName, result.call->themName);
        NoteEditor::renameThem(name, edited);
    }
    return edited;
}

} // namespace

/// The notice of a call that another program transcribes.
ToastMessage AppModel::callIsBusy() {
    return {.text = "Another program is transcribing this call", .symbol = warningSymbol};
}

void AppModel::setStage(Uuid id, std::optional<ProcessingStage> stage) {
    auto stages = processing.value();
    if (stage) {
        stages.insert_or_assign(id, *stage);
    } else {
        stages.erase(id);
    }
    processing = std::move(stages);
}

CallProcessor AppModel::processor() const {
    return {makeTranscriber(), std::make_shared<ExtractiveSummariser>(), region};
}

DigestContext AppModel::context(Date startedAt, std::string themName, std::string source) const {
    return {.callDate = startedAt,
            .yourName = settings.yourName.value(),
            .themName = std::move(themName),
            .source = std::move(source)};
}

DigestContext AppModel::context(const CallRecord& call) const {
    DigestContext told = context(call.startedAt, call.themName, call.source);
    told.language = call.language;
    return told;
}

void AppModel::showPlaceholder(Uuid id, std::string title, CallRecord call) {
    const Date startedAt = call.startedAt;
    notes_.insert(notes_.begin(), Note(id, std::move(title), startedAt, placeholderBlocks(), std::move(call)));
    Q_EMIT notesChanged({{id}});
    selection = id;
}

QCoro::Task<> AppModel::process(Recording recording, std::shared_ptr<RecordingMarkFile> mark) {
    const Uuid id = recording.noteID;
    auto lock = LibraryLock::forCall(store_.audioFolder(id));
    if (!lock) {
        flash(callIsBusy());
        co_return;
    }
    setStage(id, ProcessingStage::transcribing(0));
    const Note* stored = note(id);
    const std::optional<Note> before = stored != nullptr ? std::optional(*stored) : std::nullopt;
    const DigestContext told =
        context(recording.startedAt, before && before->call ? before->call->themName : "", recording.source);
    const auto report = [this, id](ProcessingStage stage) {
        loop_.post([this, id, stage] {
            if (stage.kind != ProcessingStage::Kind::done && processing.value().contains(id)) {
                setStage(id, stage);
            }
        });
    };
    const QPointer self(this);
    const std::stop_token stop = stopProcessing_.get_token();
    const auto work = [processor = processor(), recording, told, report, stop] {
        return processor.process(recording, told, report, stop);
    };
    WrittenCall written = co_await inBackground(work);
    if (!self) {
        co_return;
    }
    setStage(id, std::nullopt);
    if (stop.stop_requested() && mark) {
        forget(id);
        Q_EMIT notesChanged({{id}});
        store_.removeAudio(id);
        co_return;
    }
    if (note(id) == nullptr && (stop.stop_requested() || written.note.call->segments.empty())) {
        co_return; // deleted with its recording, and there is no transcript to bring it back for
    }
    if (note(id) == nullptr) {
        co_await bringBack(id);
        if (!self) {
            co_return;
        }
    }
    Note finished = std::move(written.note);
    const bool isStopgap = keepLiveLines(finished, recording.loss) || written.isStopgap;
    if (stop.stop_requested()) {
        finished.call->problem =
            finished.call->segments.empty() ? CallProblem::joined(quitProblem, recording.loss) : recording.loss;
    }
    file(std::move(finished), before, std::move(mark));
    if (!isStopgap) {
        removeAudioIfNotKept(id);
    }
    lock.reset(); // A summary takes its time and needs no audio.
    const AISettings& ai = settings.ai.value();
    const bool asksAI = ai.enabled && !ai.askEachTime && !stop.stop_requested();
    if (const Note* filed = note(id); asksAI && filed->call && !filed->call->segments.empty()) {
        co_await runAI(id);
    }
}

/// Where the recording gave no words, the call keeps the lines that were transcribed live; whether there are
/// any.
bool AppModel::keepLiveLines(Note& finished, const std::optional<std::string>& loss) const {
    const Note* placeholder = note(finished.id);
    if (!finished.call->segments.empty() || placeholder == nullptr || !placeholder->call ||
        placeholder->call->segments.empty()) {
        return false;
    }
    CallRecord call = *finished.call;
    call.segments = placeholder->call->segments;
    call.language = placeholder->call->language;
    if (call.problem && call.problem->starts_with(nobodyHeard)) {
        call.problem = loss;
    }
    const CallDigest digest = ExtractiveSummariser::makeDigest(call.segments, context(call), region, currentDate());
    call.digest = digest;
    finished = NoteEditor::callNote(finished.id, std::move(call), digest, region, currentDate());
    return true;
}

/// A call that was deleted while it was transcribed comes back with what the user had put there.
QCoro::Task<> AppModel::bringBack(Uuid id) {
    if (isDemo) {
        co_return;
    }
    const QPointer self(this);
    std::optional<Note> stored = co_await store_.restore(id, currentDate());
    if (self && stored && note(id) == nullptr) {
        notes_.insert(notes_.begin(), std::move(*stored));
        Q_EMIT notesChanged({{id}});
    }
}

/// Puts a finished call in the place of its placeholder, with what the user wrote there meanwhile after it.
void AppModel::file(Note finished, const std::optional<Note>& before, std::shared_ptr<RecordingMarkFile> mark) {
    const Uuid id = finished.id;
    if (const Note* placeholder = note(id)) {
        takeOver(*placeholder, before, finished);
        notes_.replace(std::move(finished));
    } else {
        notes_.insert(notes_.begin(), std::move(finished));
    }
    Q_EMIT notesChanged({{id}});
    SerialQueue::Work whenSaved;
    if (mark) {
        whenSaved = [mark = std::move(mark)] { mark->remove(); };
    }
    scheduleSave(id, true, std::move(whenSaved));
}

void AppModel::removeAudioIfNotKept(Uuid id) {
    const Note* filed = note(id);
    // Without a transcript the audio is all there is of the call.
    if (settings.keepAudio.value() || filed == nullptr || !filed->call || filed->call->segments.empty()) {
        return;
    }
    editCall(id, [](CallRecord& call) {
        call.audioFolder.reset();
        call.tracks.clear();
    });
    // Not before the transcript is on disk, for the same reason.
    saveNow(id, [folder = store_.audioFolder(id)] { Folders::removeAll(folder); });
}

void AppModel::cancelProcessing() {
    std::exchange(stopProcessing_, std::stop_source()).request_stop();
}

void AppModel::editCall(Uuid id, const std::function<void(CallRecord&)>& change) {
    update(id, true, [&change](Note& note) {
        if (note.call) {
            change(*note.call);
        }
    });
}

CallTracks AppModel::existingTracks(const Note& note) const {
    const std::vector<fs::path> entries = Folders::entries(store_.audioFolder(note.id));
    const auto existing = [&](Speaker side) -> std::optional<fs::path> {
        const auto& recorded = note.call->tracks;
        const auto files = TrackFiles::of(entries, side);
        const bool isThere = std::ranges::find(recorded, side) != recorded.end() && !files.empty();
        return isThere ? std::optional(files.front()) : std::nullopt;
    };
    return {.you = existing(Speaker::you), .them = existing(Speaker::them)};
}

CallFiles AppModel::callFiles(const Note& note) const {
    return note.call ? CallFiles{.tracks = existingTracks(note), .hasEarlier = hasEarlier(note.id)} : CallFiles();
}

CallActions AppModel::callActions(const Note& note, const CallFiles& files) const {
    return CallActions::of(
        note, files,
        {.isTranscribing = processing.value().contains(note.id), .isSummarising = aiRunning.value().contains(note.id)});
}

QCoro::Task<> AppModel::retranscribe(Uuid id) {
    const Note* stored = note(id);
    if (stored == nullptr || !stored->call || processing.value().contains(id)) {
        co_return;
    }
    const CallFiles files = callFiles(*stored);
    if (!callActions(*stored, files).transcribe || lacksTrack(*stored->call, files.tracks)) {
        const std::string missing = TranscriberError::missingFile().what();
        flash({.text = missing, .symbol = warningSymbol});
        if (stored->call->segments.empty()) {
            editCall(id, [&missing](CallRecord& call) { tell(missing, call); });
        }
        co_return;
    }
    const auto lock = LibraryLock::forCall(store_.audioFolder(id));
    if (!lock) {
        flash(callIsBusy());
        co_return;
    }
    setStage(id, ProcessingStage::transcribing(0));
    const QPointer self(this);
    const Note before = *stored;
    const std::stop_token stop = stopProcessing_.get_token();
    std::optional<Note> result;
    std::string problem;
    const auto work = [processor = processor(), before, tracks = files.tracks, told = context(*before.call), stop] {
        return processor.retranscribe(before, tracks, told, stop);
    };
    try {
        result = co_await inBackground(work);
    } catch (const std::exception& error) {
        problem = error.what();
    }
    if (!self) {
        co_return;
    }
    if (result) {
        const bool isKept = keepEarlier(id);
        update(id, true, [&](Note& note) { note = note == before ? *result : withTranscript(note, *result, before); });
        // The audio of a call that had a transcript was kept by the user's choice at the time.
        if (before.call->segments.empty()) {
            removeAudioIfNotKept(id);
        }
        if (isKept) {
            flash(undoable(id, "New transcript", "waveform"));
        }
    } else if (!stop.stop_requested()) {
        editCall(id, [&problem](CallRecord& call) { tell(problem, call); });
    }
    setStage(id, std::nullopt);
}

} // namespace varnic
