#include "Varnic/AppModel/AppModel.h"

#include "VarnicCore/Models/Clock.h"

#include <fmt/format.h>

namespace varnic {

QCoro::Task<> AppModel::recoverRecordings() {
    if (isDemo) {
        co_return;
    }
    const auto found = co_await store_.deadRecordings();
    for (const auto& dead : found) {
        const Recording& recording = dead->recording;
        if (!dead->hasSound()) {
            store_.removeAudio(recording.noteID);
            continue;
        }
        CallRecord call{.startedAt = recording.startedAt,
                        .duration = recording.duration,
                        .source = recording.source,
                        .audioFolder = recording.audioFolder,
                        .tracks = recording.tracks.speakers(),
                        .problem = quitProblem};
        notes_.insert(notes_.begin(), NoteEditor::callNote(recording.noteID, std::move(call), std::nullopt, region,
                                                           recording.startedAt));
        Q_EMIT notesChanged();
        // Until the note is on disk, the recording counts as one to be recovered.
        saveNow(recording.noteID, [dead] { dead->mark.remove(); });
        flash({.text = fmt::format("Recovered a recording of {}", Clock::length(recording.duration)),
               .symbol = "waveform"});
    }
}

} // namespace varnic
