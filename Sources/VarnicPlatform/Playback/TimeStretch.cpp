#include "VarnicPlatform/Playback/TimeStretch.h"

#include "VarnicPlatform/Playback/PlaybackQueue.h"

#include <SoundTouch.h>

namespace varnic {

namespace {

constexpr std::size_t channels = PlaybackQueue::channels;

} // namespace

TimeStretch::TimeStretch() : engine_(std::make_unique<soundtouch::SoundTouch>()) {
    engine_->setSampleRate(PlaybackQueue::rate);
    engine_->setChannels(channels);
    // Pitch and rate stay, so there is nothing to alias; the filter would only change a beginning.
    engine_->setSetting(SETTING_USE_AA_FILTER, 0);
}

TimeStretch::TimeStretch(TimeStretch&&) noexcept = default;
TimeStretch& TimeStretch::operator=(TimeStretch&&) noexcept = default;
TimeStretch::~TimeStretch() = default;

void TimeStretch::clear() {
    engine_->clear();
}

void TimeStretch::setSpeed(double speed) {
    engine_->setTempo(speed);
}

std::span<const float> TimeStretch::stretched(std::span<const float> samples) {
    engine_->putSamples(samples.data(), static_cast<unsigned>(samples.size() / channels));
    return ready();
}

std::span<const float> TimeStretch::rest() {
    engine_->flush();
    return ready();
}

std::span<const float> TimeStretch::ready() {
    const unsigned frames = engine_->numSamples();
    out_.resize(frames * channels);
    engine_->receiveSamples(out_.data(), frames);
    return out_;
}

} // namespace varnic
