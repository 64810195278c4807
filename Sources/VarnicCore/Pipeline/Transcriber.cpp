#include "VarnicCore/Pipeline/Transcriber.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace varnic {

std::vector<Segment> FakeTranscriber::transcribe(const SpokenTrack& track, const ProgressCallback& progress,
                                                 std::stop_token stop) const {
    if (!std::filesystem::exists(track.file)) {
        throw TranscriberError::missingFile();
    }
    if (delay > 0) {
        std::mutex mutex;
        std::condition_variable_any wake;
        std::unique_lock lock(mutex);
        for (const double fraction : {0.25, 0.5, 0.75, 1.0}) {
            wake.wait_for(lock, stop, std::chrono::duration<double>(delay / 4), [] { return false; });
            if (stop.stop_requested()) {
                throw TranscriberError::failed("cancelled");
            }
            progress(fraction);
        }
    }
    if (failure) {
        throw TranscriberError(*failure);
    }
    progress(1.0);
    std::vector<Segment> lines;
    for (const Segment& line : segments) {
        if (line.speaker == track.speaker) {
            lines.emplace_back(line.speaker, line.start, line.end, line.text);
        }
    }
    return lines;
}

} // namespace varnic
