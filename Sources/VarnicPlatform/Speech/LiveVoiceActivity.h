#pragma once

#include "VarnicPlatform/Speech/SpeechDetector.h"
#include "VarnicPlatform/Speech/SpeechSegments.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace varnic {

/// Tells as audio comes in whether somebody speaks, and how loud speech is on this side of the call. One thread.
class LiveVoiceActivity {
public:
    /// Samples of a frame, at SpeechDetector::rate.
    static constexpr std::size_t frame = 320;
    /// Seconds after which speech is noticed, and after which its end is.
    static constexpr double onset = 0.1;
    static constexpr double hangover = 0.3;

    /// Without a detector speech is told by its level.
    explicit LiveVoiceActivity(std::optional<SpeechDetector> detector) : detector_(std::move(detector)) {}

    /// The next frame, as it was recorded, and its level in decibels. Whether somebody speaks; see `onset` and
    /// `hangover`. Throws TranscriberError.
    bool add(std::span<const float> samples, float level);

    /// The audio is interrupted here; how loud people speak is remembered.
    void interrupt();

    /// The factor that brings the speech of the last seconds to the level that the models expect.
    [[nodiscard]] float gain() const { return gain_; }

private:
    void measure(float level);
    bool detect(std::span<const float> samples);
    void feed(std::span<const float> samples);
    [[nodiscard]] bool isLoud() const;

    std::optional<SpeechDetector> detector_;
    /// The levels of the last seconds.
    TrackLevels recent_;
    float gain_ = 1;
    std::size_t untilMeasured_ = 0;
    /// Frames for which the detector will still look although nothing is to be heard.
    std::size_t audible_ = 0;
    /// The last audio that the detector was not given.
    std::vector<float> withheld_;
    std::vector<float> scaled_;
};

} // namespace varnic
