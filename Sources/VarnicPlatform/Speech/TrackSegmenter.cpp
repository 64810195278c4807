#include "VarnicPlatform/Speech/TrackSegmenter.h"

#include "VarnicCore/Audio/AudioReader.h"
#include "VarnicCore/Audio/EchoFreeReader.h"
#include "VarnicCore/Audio/LevelMeter.h"
#include "VarnicPlatform/Speech/SpeechDetector.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace varnic {

using VoiceActivity::Range;

namespace {

/// How speech is told by its level alone.
constexpr double shortestSpeech = 0.25;
constexpr double bridgedPause = 0.6;
/// Progress is told with each segment, and in so many seconds of the track without one.
constexpr double tellEvery = 10;

constexpr int rate = SpeechDetector::rate;

std::int64_t sampleAt(double seconds) {
    return std::llround(seconds * rate);
}

/// Replaces its argument by the next audio of a track, one channel at `rate`; false at the end.
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

/// The audio of a track as the engine takes it, from front to back.
class TrackAudio {
public:
    TrackAudio(Reading read, float gain) : read_(std::move(read)), gain_(gain) {}

    /// The next samples, which are kept; empty at the end.
    std::span<const float> next() {
        if (!read_(block_)) {
            return {};
        }
        for (float& sample : block_.channels.front()) {
            sample *= gain_;
        }
        kept_.insert(kept_.end(), block_.channels.front().begin(), block_.channels.front().end());
        return block_.channels.front();
    }

    /// How many samples have been read.
    [[nodiscard]] std::int64_t position() const { return first_ + std::ssize(kept_); }

    /// The samples of a part, as far as they have been read and are kept.
    [[nodiscard]] std::span<const float> part(Range range) const {
        const std::int64_t first = std::clamp(sampleAt(range.start), first_, position());
        const std::int64_t last = std::clamp(sampleAt(range.end), first, position());
        return std::span(kept_).subspan(static_cast<std::size_t>(first - first_),
                                        static_cast<std::size_t>(last - first));
    }

    /// The samples before this moment need not be kept.
    void forget(double before) {
        const std::int64_t count = std::min(sampleAt(before), position()) - first_;
        if (count > forgottenAtOnce) {
            kept_.erase(kept_.begin(), kept_.begin() + count);
            first_ += count;
        }
    }

private:
    /// Moving what is kept costs nothing when it is done once in so many samples.
    static constexpr std::int64_t forgottenAtOnce = std::int64_t{10} * rate;

    Reading read_;
    float gain_;
    PcmBuffer block_;
    std::vector<float> kept_;
    /// The place of the first kept sample in the track.
    std::int64_t first_ = 0;
};

/// Gives a detector a track of which only some parts are audible.
class AudibleFeed {
public:
    AudibleFeed(SpeechDetector detector, std::vector<Range> audible)
        : detector_(std::move(detector)), audible_(std::move(audible)) {}

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

    [[nodiscard]] SpeechDetector& detector() { return detector_; }

private:
    SpeechDetector detector_;
    std::vector<Range> audible_;
    std::size_t part_ = 0;
    std::int64_t position_ = 0;
};

/// Gives the segments of a track while its audio goes by.
class Pass {
public:
    /// `feed` finds the speech; without one it has to be told by `know` beforehand.
    /// `gain` is in decibels.
    Pass(Reading read, float gain, std::optional<AudibleFeed> feed, const TrackLevels& track, SegmentLimits limits,
         const TrackSegmenter::OnSegment& onSegment, const ProgressCallback& progress)
        : audio_(std::move(read), std::pow(10.0F, gain / 20)), gain_(gain), feed_(std::move(feed)), track_(track),
          planner_(track, limits), onSegment_(onSegment), progress_(progress) {}

    /// All of the track's speech.
    void know(const std::vector<Range>& speech) {
        add(speech);
        planner_.finish();
    }

    /// Reads on; false at the end, when all segments have been given.
    bool advance() {
        const std::span<const float> samples = audio_.next();
        if (samples.empty()) {
            if (feed_) {
                know(feed_->detector().finish());
            }
            give(true);
            return false;
        }
        if (feed_) {
            feed_->add(samples);
            add(feed_->detector().take());
            planner_.advance(position() - SpeechDetector::latest);
        }
        give(false);
        forget();
        if (position() - told_ >= tellEvery) {
            tell();
        }
        return true;
    }

private:
    /// The seconds that have been read.
    [[nodiscard]] double position() const { return static_cast<double>(audio_.position()) / rate; }

    void tell() {
        told_ = position();
        progress_(std::min(told_ / track_.seconds(), 1.0));
    }

    void add(const std::vector<Range>& speech) {
        std::ranges::for_each(speech, [this](const Range& range) { planner_.add(range); });
        speech_.insert(speech_.end(), speech.begin(), speech.end());
    }

    void give(bool isEnd) {
        while (next_ || (next_ = planner_.next())) {
            if (!isEnd && sampleAt(next_->audio.end) > audio_.position()) {
                return;
            }
            next_->noise = SpeechSegments::pauseLevel(speech_, next_->speech.end, track_) + gain_;
            onSegment_(audio_.part(next_->audio), *next_);
            next_.reset();
            tell();
        }
    }

    void forget() {
        double needed = feed_ ? position() - SpeechDetector::latest : position();
        needed = std::min(needed, planner_.pending().value_or(needed));
        audio_.forget(std::min(needed - SpeechSegments::context, next_ ? next_->audio.start : needed));
    }

    TrackAudio audio_;
    float gain_;
    std::optional<AudibleFeed> feed_;
    const TrackLevels& track_;
    SegmentPlanner planner_;
    /// All that is known.
    std::vector<Range> speech_;
    double told_ = 0;
    const TrackSegmenter::OnSegment& onSegment_;
    const ProgressCallback& progress_;
    /// A segment whose audio has not been read to its end.
    std::optional<SpeechSegment> next_;
};

} // namespace

TrackSegmenter::TrackSegmenter(SpokenTrack track, std::optional<std::filesystem::path> detector, SegmentLimits limits,
                               std::stop_token stop)
    : spoken_(std::move(track)), detector_(std::move(detector)), limits_(limits), stop_(std::move(stop)) {}

void TrackSegmenter::run(const OnSegment& onSegment, const ProgressCallback& progress) {
    learnEcho();
    measure();
    const std::vector<Range> loud = VoiceActivity::detect(track_.levels, track_.frame, shortestSpeech, bridgedPause);
    std::optional<float> level = SpeechSegments::meanLevel(loud, track_);
    if (loud.empty()) {
        // Where other voices or a fan are about as loud as the speech, the detector tells it from them, the level does
        // not.
        level = detector_ ? SpeechSegments::levelInNoise(track_) : std::nullopt;
    }
    if (!level) {
        return;
    }
    std::optional<AudibleFeed> feed;
    if (detector_) {
        feed.emplace(SpeechDetector::create(*detector_), SpeechSegments::audible(track_, *level));
    }
    Pass pass(reading(spoken_, echo_), SpeechSegments::speechLevel - *level, std::move(feed), track_, limits_,
              onSegment, progress);
    if (!detector_) {
        pass.know(loud);
    }
    while (pass.advance()) {
        requireGoingOn();
    }
}

void TrackSegmenter::learnEcho() {
    if (spoken_.overheard) {
        echo_ = EchoFreeReader::learn(spoken_.file, *spoken_.overheard, [this] { requireGoingOn(); });
    }
}

void TrackSegmenter::measure() {
    LevelMeter meter(rate, track_.frame);
    PcmBuffer block;
    for (Reading read = reading(spoken_, echo_); read(block);) {
        requireGoingOn();
        meter.add(block);
    }
    track_.levels = meter.finish();
}

void TrackSegmenter::requireGoingOn() const {
    if (stop_.stop_requested()) {
        throw TranscriberError::failed("cancelled");
    }
}

} // namespace varnic
