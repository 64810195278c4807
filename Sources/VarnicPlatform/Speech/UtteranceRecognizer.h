#pragma once

#include "VarnicCore/Audio/CaptureSource.h"
#include "VarnicPlatform/Speech/GuardedDecoding.h"
#include "VarnicPlatform/Speech/LiveVoiceActivity.h"
#include "VarnicPlatform/Speech/SpeechRequest.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace varnic {

/// Transcribes the audio of one request as it comes in, utterance by utterance. Memory does not grow with the request.
/// One thread, on which it also decodes and reports.
class UtteranceRecognizer {
public:
    static constexpr int rate = SpeechRecognizer::rate;

    /// Seconds on a clock that does not leap.
    using Clock = std::function<double()>;

    /// `voice` must outlive it. An error that `decode` throws costs the words of the utterance, no more. The slower
    /// decoding is by the clock, the fewer partial results there are. `before` is audio from before the request
    /// that is still to be transcribed. Throws TranscriberError where the voice activity detector fails.
    UtteranceRecognizer(LiveVoiceActivity& voice, GuardedDecoding::Decode decode, SpeechRequest::OnResult report,
                        std::span<const float> before = {}, Clock clock = HostClock::now);

    /// The next samples at `rate`. Reports the final result of each utterance whose end is in them. Throws
    /// TranscriberError where the voice activity detector fails.
    void add(std::span<const float> samples);

    /// So many samples without audio; costs the same however many.
    void skip(std::int64_t samples);

    /// Called when there is time: reports what is said so far if there is enough new, or if there is anything new and
    /// `pausing` tells that nothing more may come for now.
    void offerPartial(bool pausing);

    /// Ends the open utterance, if there is one, with its final result. More may follow.
    void finish();

    /// The audio that another one has to be given to go on with the open utterance; this one is done then.
    std::vector<float> takeAudio() { return std::move(audio_); }

    [[nodiscard]] bool isOpen() const { return open_; }

private:
    /// What was transcribed of the open utterance, and up to where that is.
    struct Transcribed {
        std::int64_t end = 0;
        std::vector<TimedWord> words;
    };

    void lookAt(std::span<const float> frame);
    void begin();
    void follow(bool speaks);
    void cut();
    void close(std::int64_t end);
    void forget(std::int64_t before);
    const std::vector<TimedWord>& transcribe(std::int64_t end);
    [[nodiscard]] std::int64_t audioEnd() const;
    [[nodiscard]] double partialStep() const;
    [[nodiscard]] double fromFirst(std::int64_t position) const;
    void report(const std::vector<TimedWord>& words, bool isFinal);

    LiveVoiceActivity& voice_;
    GuardedDecoding::Decode decode_;
    SpeechRequest::OnResult report_;
    Clock clock_;
    /// Positions are samples since the request began. The kept audio begins at `first_`, as do its levels; whole frames
    /// of it were looked at up to `position_`.
    std::vector<float> audio_;
    TrackLevels track_;
    std::int64_t first_ = 0;
    std::int64_t position_ = 0;

    bool open_ = false;
    bool speaks_ = false;
    bool shown_ = false;
    std::int64_t audioStart_ = 0;
    std::int64_t speechStart_ = 0;
    std::int64_t speechEnd_ = 0;
    std::optional<Transcribed> transcribed_;
    /// Seconds that the last decoding took.
    double cost_ = 0;
};

} // namespace varnic
