#pragma once

#include "VarnicCore/Audio/EchoRemoval.h"
#include "VarnicCore/Pipeline/Transcriber.h"
#include "VarnicPlatform/Speech/SpeechStretches.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <stop_token>

namespace varnic {

/// Finds in one track what the engine is to hear. It goes through the file twice, for its levels first: by them the
/// sound is brought to the level that the models expect. What the microphone overheard of the other side is taken out
/// of its track. Memory does not grow with the track but for 50 levels a second. One thread.
class TrackListener {
public:
    /// Takes a stretch and the samples of its `sound`, which are gone when it returns.
    using Give = std::function<void(std::span<const float>, const SpeechStretch&)>;

    /// `detector` is the speech detector's model; without one, speech is found by its level. A request through `stop`
    /// ends the work with TranscriberError `failed`, at the latest when the stretch that was given is done.
    TrackListener(SpokenTrack track, std::optional<std::filesystem::path> detector, std::stop_token stop);

    /// Gives the stretches of the track with speech, one after another, and `progress` the part of the track that was
    /// gone through, 0 to 1. Throws AudioError, TranscriberError and what `give` throws.
    void listen(const Give& give, const ProgressCallback& progress);

    /// Known when the first stretch is given.
    [[nodiscard]] const TrackLevels& levels() const { return track_; }

private:
    void learnEcho();
    void measure();
    void requireGoingOn() const;

    SpokenTrack spoken_;
    /// What is known of the echo in the track, if there may be one.
    std::optional<EchoRemoval> echo_;
    std::optional<std::filesystem::path> detector_;
    std::stop_token stop_;
    TrackLevels track_;
};

} // namespace varnic
