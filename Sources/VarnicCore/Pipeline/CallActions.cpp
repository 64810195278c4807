#include "VarnicCore/Pipeline/CallActions.h"

namespace varnic {

CallActions CallActions::of(const Note& note, const CallFiles& files, CallWork work) {
    if (!note.call) {
        return {};
    }
    const bool hasAudio = !files.tracks.speakers().empty();
    return {.play = hasAudio,
            .exportAudio = hasAudio,
            .transcribe = hasAudio && !work.isTranscribing,
            .removeAudio = hasAudio && !work.isTranscribing,
            .summarise = !note.call->segments.empty() && !work.isSummarising,
            .bringBackEarlier = files.hasEarlier && !work.isTranscribing && !work.isSummarising};
}

} // namespace varnic
