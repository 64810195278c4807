#include "VarnicPlatform/Speech/TrackListener.h"

#include "VarnicCore/Audio/AudioReader.h"
#include "VarnicCore/Audio/EchoFreeReader.h"
#include "VarnicCore/Audio/LevelMeter.h"
#include "VarnicPlatform/Speech/SpeechDetector.h"
#include "VarnicPlatform/Speech/StretchHearing.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

namespace varnic {

using VoiceActivity::Range;

namespace {

/// How speech is told by its level alone.
constexpr double shortestSpeech = 0.25;
constexpr double bridgedPause = 0.6;

constexpr int rate = SpeechRecognizer::rate;

std::int64_t sampleAt(double seconds) {
    return std::llround(seconds * rate);
}

/// Replaces its argument by the next sound of a track, one channel at `rate`; false at the end.
using Reading = std::move_only_function<bool(PcmBuffer&)>;

Reading reading(const SpokenTrack& track, const std::optional<EchoRemoval>& echo) {
    static_assert(EchoRemoval::rate == rate);
    if (echo) {
        return [reader = EchoFreeReader(track.file, *track.overheard, *echo)](PcmBuffer& block) mutable {
            return reader.read(block);
        };
    }
    return [reader = AudioReader::openMono(track.file, rate)](PcmBuffer& block) mutable { return reader.read(block); };
}

/// The sound of a track as the engine takes it, from front to back.
class Sound {
public:
    Sound(Reading read, float gain) : read_(std::move(read)), gain_(gain) {}

    /// The next samples; empty at the end.
    std::span<const float> next() {
        if (!read_(block_)) {
            return {};
        }
        for (float& sample : block_.channels.front()) {
            sample *= gain_;
        }
        return block_.channels.front();
    }

    /// The samples of a part, as far as there are any. Parts have to be asked for in their order; `reading` is called
    /// again and again meanwhile.
    std::span<const float> part(Range range, const std::function<void()>& reading) {
        const std::int64_t first = std::max(sampleAt(range.start), first_);
        const std::int64_t last = sampleAt(range.end);
        while (first_ + static_cast<std::int64_t>(kept_.size()) < last) {
            drop(first);
            reading();
            const std::span<const float> samples = next();
            if (samples.empty()) {
                break;
            }
            kept_.insert(kept_.end(), samples.begin(), samples.end());
        }
        drop(first);
        const auto count = std::clamp<std::int64_t>(last - first_, 0, static_cast<std::int64_t>(kept_.size()));
        return std::span(kept_).first(static_cast<std::size_t>(count));
    }

private:
    void drop(std::int64_t before) {
        const std::int64_t count = std::min(before - first_, static_cast<std::int64_t>(kept_.size()));
        if (count > 0) {
            kept_.erase(kept_.begin(), kept_.begin() + count);
            first_ += count;
        }
    }

    Reading read_;
    float gain_;
    PcmBuffer block_;
    std::vector<float> kept_;
    /// The place of the first kept sample in the track.
    std::int64_t first_ = 0;
};

/// Gives the detector a track of which only some parts are audible.
class AudibleFeed {
public:
    AudibleFeed(SpeechDetector& detector, std::vector<Range> audible)
        : detector_(detector), audible_(std::move(audible)) {}

    void add(std::span<const float> samples) {
        while (!samples.empty()) {
            while (part_ < audible_.size() && sampleAt(audible_[part_].end) <= position_) {
                ++part_;
            }
            const bool last = part_ == audible_.size();
            const bool heard = !last && sampleAt(audible_[part_].start) <= position_;
            const Range part = last ? Range{} : audible_[part_];
            const std::int64_t left = sampleAt(heard ? part.end : part.start) - position_;
            const std::size_t count = last ? samples.size() : std::min(samples.size(), static_cast<std::size_t>(left));
            if (heard) {
                detector_.add(samples.first(count));
            } else {
                detector_.addSilence(static_cast<std::int64_t>(count));
            }
            position_ += static_cast<std::int64_t>(count);
            samples = samples.subspan(count);
        }
    }

    [[nodiscard]] std::int64_t position() const { return position_; }

private:
    SpeechDetector& detector_;
    std::vector<Range> audible_;
    std::size_t part_ = 0;
    std::int64_t position_ = 0;
};

} // namespace

TrackListener::TrackListener(SpokenTrack track, std::optional<std::filesystem::path> detector, std::stop_token stop)
    : spoken_(std::move(track)), detector_(std::move(detector)), stop_(std::move(stop)) {}

std::vector<SpeechStretch> TrackListener::find(const ProgressCallback& progress) {
    learnEcho();
    measure();
    const std::vector<Range> loud = VoiceActivity::detect(track_.levels, track_.frame, shortestSpeech, bridgedPause);
    if (loud.empty()) {
        return {};
    }
    gain_ = std::pow(10.0F, (SpeechStretches::speechLevel - SpeechStretches::meanLevel(loud, track_)) / 20);
    return SpeechStretches::plan(detector_ ? detect(*detector_, progress) : loud, track_);
}

std::vector<TimedWord> TrackListener::hear(const std::vector<SpeechStretch>& stretches,
                                           const SpeechRecognizer& recognizer, const ProgressCallback& progress) {
    const double total = std::max(track_.seconds(), 1.0);
    Sound sound(reading(spoken_, echo_), gain_);
    std::vector<TimedWord> words;
    const auto decode = [&](std::span<const float> samples) {
        requireGoingOn();
        return recognizer.decode(samples);
    };
    for (const SpeechStretch& stretch : stretches) {
        const std::span<const float> samples = sound.part(stretch.sound, [this] { requireGoingOn(); });
        const std::vector<TimedWord> heard = StretchHearing::hear(samples, stretch, track_, decode);
        words.insert(words.end(), heard.begin(), heard.end());
        progress(std::min(stretch.speech.end / total, 1.0));
    }
    return words;
}

void TrackListener::learnEcho() {
    if (spoken_.overheard) {
        echo_ = EchoFreeReader::learn(spoken_.file, *spoken_.overheard, [this] { requireGoingOn(); });
    }
}

void TrackListener::measure() {
    LevelMeter meter(rate, track_.frame);
    PcmBuffer block;
    for (Reading read = reading(spoken_, echo_); read(block);) {
        requireGoingOn();
        meter.add(block);
    }
    track_.levels = meter.finish();
}

std::vector<Range> TrackListener::detect(const std::filesystem::path& model, const ProgressCallback& progress) {
    SpeechDetector detector = SpeechDetector::create(model);
    const float level = SpeechStretches::speechLevel - 20 * std::log10(gain_);
    AudibleFeed feed(detector, SpeechStretches::audible(track_, level - SpeechStretches::silenceBelowSpeech));
    Sound sound(reading(spoken_, echo_), gain_);
    const std::int64_t total = std::max(sampleAt(track_.seconds()), std::int64_t{rate});
    std::int64_t told = 0;
    for (std::span<const float> samples = sound.next(); !samples.empty(); samples = sound.next()) {
        requireGoingOn();
        feed.add(samples);
        if (feed.position() - told > std::int64_t{10} * rate) {
            told = feed.position();
            progress(std::min(static_cast<double>(told) / static_cast<double>(total), 1.0));
        }
    }
    return detector.finish();
}

void TrackListener::requireGoingOn() const {
    if (stop_.stop_requested()) {
        throw TranscriberError::failed("cancelled");
    }
}

} // namespace varnic
