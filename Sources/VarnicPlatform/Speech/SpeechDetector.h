#pragma once

#include "VarnicCore/Audio/VoiceActivity.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <utility>
#include <vector>

struct SherpaOnnxVoiceActivityDetector;

namespace varnic {

/// Finds speech in a stream of audio with the Silero model, which tells speech from noise and music. Movable, owned by
/// one thread at a time.
class SpeechDetector {
public:
    /// Samples a second that it takes.
    static constexpr int rate = 16'000;
    /// What it has found is told so many seconds after it began, at the latest.
    static constexpr double latest = 60;

    /// Throws TranscriberError `unavailable` for a file that the engine does not take. Only the plain Silero model may
    /// be given: the engine ends the process on some of its variants.
    static SpeechDetector create(const std::filesystem::path& modelFile);

    /// The next samples, brought to about -23 dB of full scale.
    void add(std::span<const float> samples);

    /// So many samples without any audio, which are not looked at.
    void addSilence(std::int64_t samples);

    /// Whether somebody was speaking when the last samples came. It is seen 0.1 s after speech begins, and 0.3 s after
    /// it ends.
    [[nodiscard]] bool speaks() const { return speaking_ > 0; }

    /// The speech whose end was found since this was asked last, in seconds from the stream's beginning.
    std::vector<VoiceActivity::Range> take() { return std::exchange(found_, {}); }

    /// Ends the stream and gives the speech in it that was not taken.
    std::vector<VoiceActivity::Range> finish();

private:
    struct Destroy {
        void operator()(const SherpaOnnxVoiceActivityDetector* detector) const;
    };

    explicit SpeechDetector(const SherpaOnnxVoiceActivityDetector* detector) : detector_(detector) {}

    void collect();
    void close();

    std::unique_ptr<const SherpaOnnxVoiceActivityDetector, Destroy> detector_;
    /// Samples before those that the engine counts.
    std::int64_t passed_ = 0;
    /// Samples that the engine has been given since.
    std::int64_t given_ = 0;
    /// Samples of unbroken speech, as far as the engine has told.
    std::int64_t speaking_ = 0;
    std::vector<VoiceActivity::Range> found_;
};

} // namespace varnic
