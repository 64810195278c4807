#include "Varnic/AppModel/AppModel.h"

#include "Varnic/Background.h"
#include "VarnicCore/Audio/AudioFiles.h"
#include "VarnicCore/Library/Folders.h"
#include "VarnicCore/Summariser/ExtractiveSummariser.h"
#include "VarnicCore/Text/Unicode.h"

#include <QPointer>

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <chrono>

namespace varnic {

namespace {

namespace fs = std::filesystem;

constexpr const char* warningSymbol = "exclamationmark.triangle";
constexpr const char* importedSource = "Imported recording";
constexpr const char* importedName = "Speaker";

/// A heading that stands in a call's note until its own words are there.
bool isPlaceholder(const Block& block) {
    return block.kind == BlockKind::heading && block.text == "Notes";
}

/// What the user wrote into a call's note while it was being made.
std::vector<Block> userBlocks(const Note& note) {
    std::vector<Block> blocks;
    std::ranges::copy_if(note.blocks, std::back_inserter(blocks), [](const Block& block) {
        return (!block.text.empty() || block.kind == BlockKind::table) && !isPlaceholder(block);
    });
    return blocks;
}

/// The track of a side; of several with different extensions the usual one.
std::optional<fs::path> existing(const fs::path& folder, Speaker speaker) {
    for (const char* extension : {".m4a", ".caf", ".wav", ".aiff"}) {
        fs::path file = folder / (std::string(rawValue(speaker)) + extension);
        if (std::error_code ignored; fs::exists(file, ignored)) {
            return file;
        }
    }
    return std::nullopt;
}

/// When a file was made; where the file system doesn't know, when it was last changed, or else now.
Date creationDate(const fs::path& file) {
    struct statx status{};
    if (::statx(AT_FDCWD, file.c_str(), 0, STATX_BTIME | STATX_MTIME, &status) != 0) {
        return currentDate();
    }
    const bool isKnown = (status.stx_mask & STATX_BTIME) != 0 && status.stx_btime.tv_sec > 0;
    const statx_timestamp& time = isKnown ? status.stx_btime : status.stx_mtime;
    return std::chrono::floor<std::chrono::milliseconds>(std::chrono::sys_time<std::chrono::nanoseconds>(
        std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec)));
}

/// A note that was edited while its call was transcribed anew: the edits stay, and the rest is as if they had been
/// there before.
Note withTranscript(Note edited, const Note& result, const Note& before) {
    if (!edited.call) {
        return edited;
    }
    edited.call->segments = result.call->segments;
    edited.call->problem = result.call->problem;
    if (result.call->digest && result.call->digest != before.call->digest) {
        NoteEditor::apply(*result.call->digest, edited, false, currentDate());
    }
    return edited;
}

/// A recording copied into the library.
struct ImportedFile {
    fs::path track;
    double duration = 0;
    std::shared_ptr<RecordingMarkFile> mark;
};

ImportedFile copyIn(const fs::path& file, const Uuid& id, const fs::path& folder) {
    Folders::make(folder);
    // Until the note is on disk, the folder counts as a recording that is being made.
    auto mark = std::make_shared<RecordingMarkFile>(
        RecordingMarkFile::create(folder, {id, creationDate(file), importedSource, {Speaker::them}}));
    std::string extension = Unicode::lowerCased(file.extension().string());
    fs::path track = folder / ("them" + (extension.empty() ? ".m4a" : std::move(extension)));
    fs::copy_file(file, track);
    const double duration = AudioFiles::duration(track);
    return {std::move(track), duration, std::move(mark)};
}

} // namespace

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
    return context(call.startedAt, call.themName, call.source);
}

QCoro::Task<> AppModel::process(Recording recording) {
    const Uuid id = recording.noteID;
    setStage(id, ProcessingStage::transcribing(0));
    const Note* stored = note(id);
    const DigestContext told =
        context(recording.startedAt, stored != nullptr && stored->call ? stored->call->themName : "", recording.source);
    const auto report = [this, id](ProcessingStage stage) {
        QMetaObject::invokeMethod(
            this,
            [this, id, stage] {
                if (stage.kind != ProcessingStage::Kind::done && processing.value().contains(id)) {
                    setStage(id, stage);
                }
            },
            Qt::QueuedConnection);
    };
    const QPointer self(this);
    const std::stop_token stop = stopProcessing_.get_token();
    const auto work = [processor = processor(), recording, told, report, stop] {
        return processor.process(recording, told, report, stop);
    };
    Note finished = co_await inBackground(work);
    if (!self) {
        co_return;
    }
    if (stop.stop_requested() && finished.call->segments.empty()) {
        finished.call->problem = quitProblem;
    }
    setStage(id, std::nullopt);
    file(std::move(finished));
    if (const Note* filed = note(id); !settings.keepAudio.value() && filed->call) {
        editCall(id, [](CallRecord& call) {
            call.audioFolder.reset();
            call.tracks.clear();
        });
        // Not before the transcript is on disk: until then the sound is all there is.
        saveNow(id, [folder = store_.audioFolder(id)] { Folders::removeAll(folder); });
    }
    const AISettings& ai = settings.ai.value();
    if (const Note* filed = note(id); ai.enabled && !ai.askEachTime && filed->call && !filed->call->segments.empty()) {
        co_await runAI(id);
    }
}

/// Puts a finished call in the place of its placeholder, with what the user wrote there meanwhile behind it.
void AppModel::file(Note finished) {
    const Uuid id = finished.id;
    if (Note* stored = find(id)) {
        std::ranges::move(userBlocks(*stored), std::back_inserter(finished.blocks));
        *stored = std::move(finished);
    } else {
        notes_.insert(notes_.begin(), std::move(finished));
    }
    Q_EMIT notesChanged();
    scheduleSave(id, true);
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

QCoro::Task<> AppModel::importAudio(fs::path source) {
    const Uuid id = Uuid::random();
    const fs::path folder = store_.audioFolder(id);
    ImportedFile imported;
    bool isCopied = true;
    const QPointer self(this);
    const auto copy = [source, id, folder] { return copyIn(source, id, folder); };
    try {
        imported = co_await inBackground(copy);
    } catch (const std::exception&) {
        isCopied = false;
    }
    if (!self) {
        co_return;
    }
    if (!isCopied || !(imported.duration > 0)) {
        store_.removeAudio(id);
        flash({.text = isCopied ? "That file has no audio Varnic can read" : "Couldn’t read that file",
               .symbol = warningSymbol});
        co_return;
    }
    const Date startedAt = creationDate(source);
    notes_.insert(notes_.begin(), Note(id, source.stem().string(), startedAt,
                                       {Block{.kind = BlockKind::heading, .text = "Notes"}, Block{}},
                                       CallRecord{.startedAt = startedAt,
                                                  .duration = imported.duration,
                                                  .source = importedSource,
                                                  .audioFolder = id.text(),
                                                  .tracks = {Speaker::them},
                                                  .themName = importedName}));
    Q_EMIT notesChanged();
    section = LibrarySection::all;
    selection = id;
    saveNow(id, [mark = imported.mark] { mark->remove(); });
    Recording recording{.noteID = id,
                        .tracks = {.you = std::nullopt, .them = imported.track},
                        .live = std::nullopt,
                        .startedAt = startedAt,
                        .duration = imported.duration,
                        .source = importedSource,
                        .audioFolder = id.text()};
    co_await process(std::move(recording));
    if (self) {
        editCall(id, [](CallRecord& call) { call.themName = importedName; });
    }
}

QCoro::Task<> AppModel::chooseImport() {
    std::string message = "Choose a recording to transcribe on this Mac";
    const QPointer self(this);
    const auto file = co_await desktop.chooseRecording(std::move(message));
    if (self && file) {
        co_await importAudio(*file);
    }
}

CallTracks AppModel::existingTracks(const Note& note) const {
    CallTracks tracks;
    const fs::path folder = store_.audioFolder(note.id);
    const auto& recorded = note.call->tracks;
    if (std::ranges::find(recorded, Speaker::you) != recorded.end()) {
        tracks.you = existing(folder, Speaker::you);
    }
    if (std::ranges::find(recorded, Speaker::them) != recorded.end()) {
        tracks.them = existing(folder, Speaker::them);
    }
    return tracks;
}

QCoro::Task<> AppModel::retranscribe(Uuid id) {
    const Note* stored = note(id);
    if (stored == nullptr || !stored->call || processing.value().contains(id)) {
        co_return;
    }
    setStage(id, ProcessingStage::transcribing(0));
    const QPointer self(this);
    const Note before = *stored;
    const std::stop_token stop = stopProcessing_.get_token();
    std::optional<Note> result;
    std::string problem;
    const auto work = [processor = processor(), before, tracks = existingTracks(before), told = context(*before.call),
                       stop] { return processor.retranscribe(before, tracks, told, stop); };
    try {
        result = co_await inBackground(work);
    } catch (const std::exception& error) {
        problem = error.what();
    }
    if (!self) {
        co_return;
    }
    if (result) {
        update(id, true, [&](Note& note) { note = note == before ? *result : withTranscript(note, *result, before); });
    } else if (!stop.stop_requested()) {
        editCall(id, [&problem](CallRecord& call) { call.problem = problem; });
    }
    setStage(id, std::nullopt);
}

} // namespace varnic
