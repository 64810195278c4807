#pragma once

#include "VarnicCore/Audio/EchoRemoval.h"
#include "VarnicCore/Pipeline/Transcriber.h"
#include "VarnicCore/Transcript/Utterances.h"
#include "VarnicPlatform/Speech/SpeechRecognizer.h"
#include "VarnicPlatform/Speech/SpeechStretches.h"

#include <filesystem>
#include <optional>
#include <stop_token>
#include <vector>

namespace varnic {

/// Hears one track from beginning to end, in three passes over the file: its levels, where in it somebody speaks, and
/// what is said. What the microphone overheard of the other side is taken out of its track first. Memory does not grow
/// with the track but for 50 levels a second. One thread.
class TrackListener {
public:
    /// `detector` is the speech detector's model; without one, speech is found by its level. A request through `stop`
    /// ends a pass with TranscriberError `failed`, at the latest when the stretch being decoded is done.
    TrackListener(SpokenTrack track, std::optional<std::filesystem::path> detector, std::stop_token stop);

    /// The stretches of the track with speech. `progress` gets the part of the track that was searched, 0 to 1. Throws
    /// AudioError and TranscriberError.
    std::vector<SpeechStretch> find(const ProgressCallback& progress);

    /// The words of stretches that `find` gave; `progress` gets the part of the track that was heard, 0 to 1. Throws
    /// AudioError and TranscriberError.
    std::vector<TimedWord> hear(const std::vector<SpeechStretch>& stretches, const SpeechRecognizer& recognizer,
                                const ProgressCallback& progress);

    /// The factor that brings the track's speech to the level that the models expect. Known after `find`.
    [[nodiscard]] float gain() const { return gain_; }

private:
    void learnEcho();
    void measure();
    std::vector<VoiceActivity::Range> detect(const std::filesystem::path& model, const ProgressCallback& progress);
    void requireGoingOn() const;

    SpokenTrack spoken_;
    /// What is known of the echo in the track, if there may be one.
    std::optional<EchoRemoval> echo_;
    std::optional<std::filesystem::path> detector_;
    std::stop_token stop_;
    TrackLevels track_;
    float gain_ = 1;
};

} // namespace varnic
