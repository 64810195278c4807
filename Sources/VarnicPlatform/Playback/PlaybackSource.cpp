#include "VarnicPlatform/Playback/PlaybackSource.h"

#include <algorithm>
#include <cmath>
#include <exception>

namespace varnic {

namespace {

constexpr std::size_t channels = PlaybackQueue::channels;
constexpr std::int64_t blockFrames = 1024;

/// Keeps two loud voices at once from being clipped: up to the knee nothing is changed, above it the rest of the way to
/// full scale is approached ever more slowly.
float limited(float sample) {
    constexpr float knee = 0.8F;
    const float size = std::abs(sample);
    if (size <= knee) {
        return sample;
    }
    constexpr float rest = 1 - knee;
    return std::copysign(knee + rest * std::tanh((size - knee) / rest), sample);
}

} // namespace

PlaybackSource::PlaybackSource(const std::vector<std::filesystem::path>& files) {
    for (const std::filesystem::path& file : files) {
        try {
            Track track{AudioReader::openUpToStereo(file, PlaybackQueue::rate)};
            length_ = std::max(length_, track.reader.length());
            tracks_.push_back(std::move(track));
        } catch (const std::exception&) {
            continue; // not there, not readable, or in a form that cannot be converted
        }
    }
}

void PlaybackSource::seek(std::int64_t frame) {
    place_ = std::clamp<std::int64_t>(frame, 0, length_);
    for (Track& track : tracks_) {
        track.reader.seek(place_);
        track.block.channels.clear();
        track.at = 0;
        track.hasEnded = false;
    }
}

std::span<const float> PlaybackSource::read() {
    const std::int64_t frames = std::min(blockFrames, length_ - place_);
    mixed_.assign(static_cast<std::size_t>(frames) * channels, 0);
    for (Track& track : tracks_) {
        track.addTo(mixed_);
    }
    std::ranges::transform(mixed_, mixed_.begin(), limited);
    place_ += frames;
    return mixed_;
}

bool PlaybackSource::Track::fill() {
    while (at == block.frames() && !hasEnded) {
        at = 0;
        try {
            hasEnded = !reader.read(block);
        } catch (const std::exception&) {
            // Audio in a form that cannot be converted; the other files play on.
            block.channels.clear();
            hasEnded = true;
        }
    }
    return !hasEnded;
}

void PlaybackSource::Track::addTo(std::span<float> samples) {
    while (!samples.empty() && fill()) {
        const std::size_t frames = std::min(samples.size() / channels, block.frames() - at);
        for (std::size_t channel = 0; channel < channels; ++channel) {
            const std::vector<float>& row = block.channels[std::min(channel, block.channels.size() - 1)];
            for (std::size_t frame = 0; frame < frames; ++frame) {
                samples[frame * channels + channel] += row[at + frame];
            }
        }
        at += frames;
        samples = samples.subspan(frames * channels);
    }
}

} // namespace varnic
