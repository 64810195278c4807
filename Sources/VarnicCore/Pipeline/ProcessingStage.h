#pragma once

#include "VarnicCore/Models/Speaker.h"

#include <array>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>

namespace varnic {

/// How far a call is on its way to a note.
struct ProcessingStage {
    enum class Kind { transcribing, summarising, done };

    Kind kind = Kind::transcribing;
    /// The part of the transcription that is done, 0 to 1; 0 in the other stages.
    double fraction = 0;

    static ProcessingStage transcribing(double fraction) { return {Kind::transcribing, fraction}; }

    static ProcessingStage summarising() { return {Kind::summarising, 0}; }

    static ProcessingStage done() { return {Kind::done, 0}; }

    /// The user's text for the stage.
    [[nodiscard]] std::string label() const;

    bool operator==(const ProcessingStage&) const = default;
};

/// Receives the stages of a call in order; called on any thread.
using StageCallback = std::function<void(ProcessingStage)>;

/// The progress of several concurrent transcriptions as one. Any thread.
class ProgressBox {
public:
    /// `count`: the number of tracks, at least 1.
    explicit ProgressBox(std::size_t count);

    /// Notes how far a track is, 0 to 1, and gives the overall fraction.
    double update(Speaker speaker, double value);

private:
    std::mutex lock_;
    std::array<double, allSpeakers.size()> parts_{};
    double count_;
};

} // namespace varnic
