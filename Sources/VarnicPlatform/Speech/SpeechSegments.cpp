#include "VarnicPlatform/Speech/SpeechSegments.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <iterator>
#include <limits>
#include <numeric>

namespace varnic {

using VoiceActivity::Range;

namespace {

/// Seconds before and behind what is louder than the noise: faint beginnings and ends of words, and for the detector to
/// get used to the track again.
constexpr double audibleMargin = 0.7;
/// Decibels over its floor within which noise alone stays. So far below the loudest speaker even a faint voice is above
/// the noise, if it can be understood at all.
constexpr float aboveNoise = 6;
constexpr float noiseBelowSpeech = 20;
constexpr double shortestPause = 0.15;
/// How long the noise of a room is remembered, and how much of it has to be heard, in seconds.
constexpr double noiseMemory = 60;
constexpr double enoughNoise = 1;
/// Decibels from the tenth percentile of the pauses' levels to their median that noise doesn't reach: white noise has
/// 0, a fan, traffic or a bad line 2 to 4. Music has 6; voices that nobody took for speech, and rooms that ring, 10.
constexpr float unsteady = 5;
/// Decibels of full scale that even a good microphone's noise is above.
constexpr float plainSilence = -90;
/// What is quieter is no speech, as in VoiceActivity.
constexpr float quietestSpeech = -50;

/// Puts ranges that are at most `gap` apart together.
std::vector<Range> bridged(const std::vector<Range>& ranges, double gap) {
    std::vector<Range> result;
    for (const Range& range : ranges) {
        if (!result.empty() && range.start - result.back().end <= gap) {
            result.back().end = std::max(result.back().end, range.end);
        } else {
            result.push_back(range);
        }
    }
    return result;
}

std::vector<Range> above(float threshold, std::span<const float> levels, double start, double frame) {
    std::vector<Range> runs;
    for (std::size_t index = 0; index < levels.size(); ++index) {
        if (levels[index] > threshold) {
            const double from = start + static_cast<double>(index) * frame;
            runs.push_back({from, from + frame});
        }
    }
    return runs;
}

/// A range in pieces that are short enough, cut in the later half of each where it is quietest.
std::vector<Range> cut(Range range, double longest, const TrackLevels& track) {
    std::vector<Range> pieces;
    while (range.end - range.start > longest) {
        const double latest = std::min(range.start + longest, range.end - 1);
        const double moment = SpeechSegments::quietest({range.start + longest / 2, latest}, track);
        pieces.push_back({range.start, moment});
        range.start = moment;
    }
    pieces.push_back(range);
    return pieces;
}

float percentile(std::span<const float> levels, double part) {
    std::vector<float> sorted(levels.begin(), levels.end());
    const auto at = sorted.begin() + static_cast<std::ptrdiff_t>(part * static_cast<double>(sorted.size() - 1));
    std::ranges::nth_element(sorted, at);
    return *at;
}

double power(float level) {
    return std::pow(10.0, static_cast<double>(level) / 10);
}

double powerOf(std::span<const float> levels) {
    return std::transform_reduce(levels.begin(), levels.end(), 0.0, std::plus<>(), power);
}

/// The levels of the 0.14 seconds around each frame: a room's noise goes up and down by less than 6 dB in that.
std::vector<float> smoothed(const TrackLevels& track) {
    const std::span<const float> levels = track.levels;
    const auto reach = static_cast<std::size_t>(std::lround(0.06 / track.frame));
    std::vector<float> result(levels.size());
    for (std::size_t index = 0; index < levels.size(); ++index) {
        const std::size_t first = index - std::min(index, reach);
        const std::span<const float> window = levels.subspan(first, std::min(index + reach + 1, levels.size()) - first);
        result[index] = static_cast<float>(10 * std::log10(powerOf(window) / static_cast<double>(window.size())));
    }
    return result;
}

/// The level that a track's noise nowhere falls below, however much of the track is speech; -120 for one of plain
/// silence.
float noiseFloor(const std::vector<float>& levels) {
    std::vector<float> heard;
    std::ranges::copy_if(levels, std::back_inserter(heard), [](float level) { return level > plainSilence; });
    return heard.empty() ? -120 : percentile(heard, 0.02);
}

} // namespace

std::span<const float> TrackLevels::within(Range range) const {
    const auto index = [this](double seconds) {
        return static_cast<std::size_t>(
            std::clamp(std::round(seconds / frame), 0.0, static_cast<double>(levels.size())));
    };
    const std::size_t first = index(range.start);
    return std::span(levels).subspan(first, std::max(index(range.end), first) - first);
}

std::vector<Range> SpeechSegments::audible(const TrackLevels& track, float speech) {
    const std::vector<float> levels = smoothed(track);
    const float threshold =
        std::clamp(noiseFloor(levels) + aboveNoise, speech - silenceBelowSpeech, speech - noiseBelowSpeech);
    std::vector<Range> parts = bridged(above(threshold, levels, 0, track.frame), 2 * audibleMargin);
    for (Range& part : parts) {
        part = {std::max(part.start - audibleMargin, 0.0), std::min(part.end + audibleMargin, track.seconds())};
    }
    return parts;
}

float SpeechSegments::meanLevel(const std::vector<Range>& parts, const TrackLevels& track) {
    double sum = 0;
    std::size_t count = 0;
    for (const Range& part : parts) {
        for (const float level : track.within(part)) {
            sum += power(level);
            ++count;
        }
    }
    return count == 0 ? -120.0F : static_cast<float>(10 * std::log10(sum / static_cast<double>(count)));
}

std::optional<float> SpeechSegments::levelInNoise(const TrackLevels& track) {
    const float level = track.levels.empty() ? plainSilence : percentile(track.levels, 0.9);
    return level > quietestSpeech ? std::optional(level) : std::nullopt;
}

float SpeechSegments::pauseLevel(const std::vector<Range>& speech, double before, const TrackLevels& track) {
    std::vector<float> pauses;
    double end = std::max(before - noiseMemory, 0.0);
    const auto add = [&](double until) {
        std::ranges::copy_if(track.within({end, until}), std::back_inserter(pauses),
                             [](float level) { return level > plainSilence; });
    };
    for (const Range& range : speech) {
        if (range.end > end && range.start < before) {
            add(range.start);
            end = range.end;
        }
    }
    add(before);
    if (static_cast<double>(pauses.size()) * track.frame < enoughNoise) {
        return -120;
    }
    const float level = percentile(pauses, 0.5);
    return level - percentile(pauses, 0.1) > unsteady ? -120 : level;
}

std::vector<Range> SpeechSegments::voicedRuns(Range part, const TrackLevels& track) {
    const std::span<const float> levels = track.within(part);
    if (levels.empty()) {
        return {};
    }
    const float loud = percentile(levels, 0.9);
    const float floor = percentile(levels, 0.1);
    const float threshold = std::max(loud - 25, floor + (loud - floor) * 0.3F);
    std::vector<Range> runs = bridged(above(threshold, levels, part.start, track.frame), shortestPause);
    // Clicks are no words.
    std::erase_if(runs, [](const Range& run) { return run.end - run.start < 0.05; });
    return runs.empty() ? std::vector{part} : runs;
}

double SpeechSegments::quietest(Range between, const TrackLevels& track) {
    const std::span<const float> levels = track.within(between);
    const auto width = std::max<std::size_t>(static_cast<std::size_t>(std::lround(0.1 / track.frame)), 1);
    double least = std::numeric_limits<double>::infinity();
    double found = (between.start + between.end) / 2;
    for (std::size_t index = 0; index + width <= levels.size(); ++index) {
        const double sum = powerOf(levels.subspan(index, width));
        if (sum < least) {
            least = sum;
            found = between.start + (static_cast<double>(index) + static_cast<double>(width) / 2) * track.frame;
        }
    }
    return found;
}

void SegmentPlanner::add(Range speech) {
    for (const Range& piece : cut({speech.start, std::min(speech.end, track_.seconds())}, limits_.speech, track_)) {
        const bool joins = !speech_.empty() && piece.start - speech_.back().end <= limits_.pause &&
                           piece.end - speech_.back().start <= limits_.speech;
        if (joins) {
            speech_.back().end = std::max(speech_.back().end, piece.end);
        } else {
            speech_.push_back(piece);
        }
    }
}

std::optional<SpeechSegment> SegmentPlanner::next() {
    if (speech_.empty()) {
        return std::nullopt;
    }
    // A pause that is too long to be joined over leaves room for the whole context, too.
    const bool mayGrow = speech_.size() == 1 && known_ - speech_.front().end <= limits_.pause;
    if (mayGrow && !isFinished_) {
        return std::nullopt;
    }
    const Range speech = speech_.front();
    speech_.pop_front();
    const double before = given_ ? (speech.start - *given_) / 2 : speech.start;
    const double after = speech_.empty() ? track_.seconds() - speech.end : (speech_.front().start - speech.end) / 2;
    given_ = speech.end;
    return SpeechSegment{speech,
                         {speech.start - std::clamp(before, 0.0, SpeechSegments::context),
                          speech.end + std::clamp(after, 0.0, SpeechSegments::context)}};
}

std::optional<double> SegmentPlanner::pending() const {
    return speech_.empty() ? std::nullopt : std::optional(speech_.front().start);
}

} // namespace varnic
