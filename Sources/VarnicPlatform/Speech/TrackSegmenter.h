#pragma once

#include "VarnicCore/Audio/EchoRemoval.h"
#include "VarnicCore/Pipeline/Transcriber.h"
#include "VarnicPlatform/Speech/SpeechSegments.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <stop_token>

namespace varnic {

/// Finds in one track the speech segments that the engine is to transcribe. It goes through the file twice, for its
/// levels first: by them the audio is brought to the level that the models expect. The far end's echo is taken out of
/// the microphone's track. Memory does not grow with the track but for 50 levels a second. One thread.
class TrackSegmenter {
public:
    /// Takes the samples of a segment's `audio`, which are gone when it returns, and the segment.
    using OnSegment = std::function<void(std::span<const float>, const SpeechSegment&)>;

    /// `detector` is the voice activity detector's model; without one, speech is found by its level. A request through
    /// `stop` ends the work with TranscriberError `failed`, at the latest when the segment that was given is done.
    TrackSegmenter(SpokenTrack track, std::optional<std::filesystem::path> detector, SegmentLimits limits,
                   std::stop_token stop);

    /// Gives the segments one after another, and `progress` the part of the track that was gone through, 0 to 1. Throws
    /// AudioError, TranscriberError and what `onSegment` throws.
    void run(const OnSegment& onSegment, const ProgressCallback& progress);

    /// Known when the first segment is given.
    [[nodiscard]] const TrackLevels& levels() const { return track_; }

private:
    void learnEcho();
    void measure();
    void requireGoingOn() const;

    SpokenTrack spoken_;
    /// What is known of the echo in the track, if there may be one.
    std::optional<EchoRemoval> echo_;
    std::optional<std::filesystem::path> detector_;
    SegmentLimits limits_;
    std::stop_token stop_;
    TrackLevels track_;
};

} // namespace varnic
