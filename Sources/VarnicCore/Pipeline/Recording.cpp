#include "VarnicCore/Pipeline/Recording.h"

namespace varnic {

std::vector<Speaker> CallTracks::speakers() const {
    std::vector<Speaker> present;
    if (you) {
        present.push_back(Speaker::you);
    }
    if (them) {
        present.push_back(Speaker::them);
    }
    return present;
}

CallRecord Recording::record() const {
    return {.startedAt = startedAt,
            .duration = duration,
            .source = source,
            .audioFolder = audioFolder,
            .tracks = tracks.speakers(),
            .language = liveLanguage.empty() ? CallRecord().language : liveLanguage};
}

} // namespace varnic
