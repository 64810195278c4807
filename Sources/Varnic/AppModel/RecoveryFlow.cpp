#include "Varnic/AppModel/AppModel.h"

#include "VarnicCore/Editor/NoteEditor.h"
#include "VarnicCore/Library/LibraryLock.h"
#include "VarnicCore/Models/CallProblem.h"
#include "VarnicCore/Models/Clock.h"
#include "VarnicCore/Pipeline/Recovery.h"

#include <QPointer>

#include <fmt/format.h>

namespace varnic {

namespace {

/// Whether no attempt to transcribe the call has run to its end.
bool lacksWords(const Note& note) {
    return note.call && note.call->segments.empty() &&
           CallProblem::withoutLoss(note.call->problem).value_or(quitProblem) == quitProblem;
}

} // namespace

QCoro::Task<AppModel::Recovered> AppModel::recoverRecordings() {
    const QPointer self(this);
    Recovered recovered;
    if (isDemo) {
        co_return recovered;
    }
    std::vector<std::shared_ptr<DeadRecording>> found;
    try {
        found = co_await store_.deadRecordings();
    } catch (const std::exception& error) {
        recovered.problem = error.what();
    }
    if (!self) {
        co_return recovered;
    }
    if (recovered.problem) {
        showUnreadable(recovered.problem);
        co_return recovered;
    }
    recovered.unwritten = takeUnwritten();
    for (const auto& dead : found) {
        const Recording& recording = dead->recording;
        if (!dead->hasSound()) {
            // Among the deleted ones it is kept for a while.
            store_.remove(recording.noteID);
            ++recovered.soundless;
            continue;
        }
        CallRecord call = recording.record();
        call.problem = quitProblem;
        notes_.insert(notes_.begin(), NoteEditor::callNote(recording.noteID, std::move(call), std::nullopt, region,
                                                           recording.startedAt));
        Q_EMIT notesChanged({{recording.noteID}});
        // Until the note is on disk, the recording counts as one to be recovered.
        saveNow(recording.noteID, [dead] { dead->mark.remove(); });
        flash({.text = fmt::format("Recovered a recording of {}", Clock::length(recording.duration)),
               .symbol = "waveform"});
        recovered.calls.push_back(recording);
    }
    if (!selection.value()) {
        selectFirstIfNeeded();
    }
    co_return recovered;
}

/// Marks the calls as waiting for their transcript that have audio which nobody is transcribing.
std::vector<Uuid> AppModel::takeUnwritten() {
    std::vector<Uuid> waiting;
    for (const Note& note : notes_) {
        if (lacksWords(note) && callActions(note, callFiles(note)).transcribe &&
            LibraryLock::forCall(store_.audioFolder(note.id))) {
            waiting.push_back(note.id);
        }
    }
    for (const Uuid& id : waiting) {
        editCall(id, [](CallRecord& call) {
            call.problem = CallProblem::joined(quitProblem, CallProblem::lossIn(call.problem));
        });
    }
    return waiting;
}

} // namespace varnic
