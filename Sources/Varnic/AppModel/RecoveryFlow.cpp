#include "Varnic/AppModel/AppModel.h"

#include "VarnicCore/Models/Clock.h"

#include <QPointer>

#include <fmt/format.h>

namespace varnic {

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
        Q_EMIT notesChanged();
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

} // namespace varnic
