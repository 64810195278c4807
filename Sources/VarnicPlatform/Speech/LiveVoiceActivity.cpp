#include "VarnicPlatform/Speech/LiveVoiceActivity.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace varnic {

namespace {

/// Frames by which the speech's level is judged, and after how many new ones it is judged again.
constexpr std::size_t remembered = 1000;
constexpr std::size_t measuredEvery = 5;
/// Frames around what is audible that the detector gets too.
constexpr std::size_t audibleMargin = 25;
/// Pauses that count as speech when its level is measured, in seconds.
constexpr double bridgedPause = 0.6;
/// Twice as loud as full scale, and so quiet that it would be noise.
constexpr float leastGain = 0.05F;
constexpr float mostGain = 100;

} // namespace

bool LiveVoiceActivity::add(std::span<const float> samples, float level) {
    measure(level);
    if (!detector_) {
        return isLoud();
    }
    const float speech = SpeechSegments::speechLevel - 20 * std::log10(gain_);
    if (level > speech - SpeechSegments::silenceBelowSpeech) {
        audible_ = audibleMargin;
    } else if (audible_ > 0 && --audible_ == 0) {
        // Lets the detector close what it has open.
        static_cast<void>(detector_->finish());
    }
    return detect(samples);
}

void LiveVoiceActivity::interrupt() {
    if (detector_) {
        static_cast<void>(detector_->finish());
    }
    audible_ = 0;
    withheld_.clear();
}

void LiveVoiceActivity::measure(float level) {
    std::vector<float>& levels = recent_.levels;
    if (levels.size() == remembered) {
        levels.erase(levels.begin());
    }
    levels.push_back(level);
    if (untilMeasured_ > 0) {
        --untilMeasured_;
        return;
    }
    untilMeasured_ = measuredEvery - 1;
    const std::vector<VoiceActivity::Range> loud = VoiceActivity::detect(levels, recent_.frame, onset, bridgedPause);
    if (!loud.empty()) {
        const float mean = SpeechSegments::meanLevel(loud, recent_);
        gain_ = std::clamp(std::pow(10.0F, (SpeechSegments::speechLevel - mean) / 20), leastGain, mostGain);
    }
}

bool LiveVoiceActivity::detect(std::span<const float> samples) {
    if (audible_ == 0) {
        withheld_.insert(withheld_.end(), samples.begin(), samples.end());
        if (withheld_.size() > audibleMargin * frame) {
            withheld_.erase(withheld_.begin(), withheld_.begin() + std::ssize(samples));
        }
        return false;
    }
    feed(withheld_);
    withheld_.clear();
    feed(samples);
    return detector_->speaks();
}

void LiveVoiceActivity::feed(std::span<const float> samples) {
    scaled_.clear();
    std::ranges::transform(samples, std::back_inserter(scaled_), [this](float sample) { return sample * gain_; });
    detector_->add(scaled_);
}

bool LiveVoiceActivity::isLoud() const {
    const std::vector<VoiceActivity::Range> loud =
        VoiceActivity::detect(recent_.levels, recent_.frame, onset, hangover);
    return !loud.empty() && loud.back().end >= recent_.seconds() - hangover;
}

} // namespace varnic
