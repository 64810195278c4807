#include "VarnicCore/Pipeline/CallActions.h"

namespace varnic {

CallActions CallActions::of(const Note& note, const CallFiles& files, CallWork work) {
    if (!note.call) {
        return {};
    }
    const bool hasAudio = !files.tracks.speakers().empty();
    return {.play = hasAudio,
            .exportAudio = hasAudio,
            .transcribe = hasAudio && !work.isWrittenDown,
            .removeAudio = hasAudio && !work.isWrittenDown,
            .summarise = !note.call->segments.empty() && !work.isSummarised,
            .bringBackEarlier = files.hasEarlier && !work.isWrittenDown && !work.isSummarised};
}

} // namespace varnic
