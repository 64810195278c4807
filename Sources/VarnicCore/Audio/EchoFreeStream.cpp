#include "VarnicCore/Audio/EchoFreeStream.h"

#include <algorithm>
#include <cmath>

namespace varnic {

namespace {

constexpr auto block = static_cast<std::int64_t>(EchoRemoval::block);
/// How much longer the microphone's sound may be there than the other side's before it goes on without it: a cycle of
/// the sound server and the time to fetch it. Where nobody plays anything nothing comes from the other side.
constexpr std::int64_t patience = EchoRemoval::rate * 6 / 100;
/// What a time stamp may be off by without there being a gap, in seconds.
constexpr double tolerance = 0.05;
/// The most of the other side that waits for the microphone, and the longest gap that is filled in.
constexpr std::int64_t longestWait = std::int64_t{2} * EchoRemoval::rate;

} // namespace

bool EchoFreeStream::Side::leaps(double at) const {
    return !converter_ || at - fed_ > tolerance;
}

void EchoFreeStream::Side::pause() {
    if (converter_) {
        converter_->finish(converted_);
        converter_.reset();
        samples_.insert(samples_.end(), converted_.channels.front().begin(), converted_.channels.front().end());
    }
}

void EchoFreeStream::Side::resume(double at) {
    converter_.emplace(SampleInput{AV_SAMPLE_FMT_FLTP, TrackFormat::processing.rate, Ffmpeg::Layout::ofChannels(1)},
                       AudioFormat{EchoRemoval::rate, 1});
    converted_ = {.rate = EchoRemoval::rate, .channels = {{}}};
    fed_ = at;
    const std::int64_t position = std::llround(at * EchoRemoval::rate);
    if (samples_.empty() || position - end() > longestWait) {
        samples_.clear();
        start_ = std::max(position, start_);
    } else if (position > end()) {
        samples_.resize(static_cast<std::size_t>(position - start_));
    }
}

void EchoFreeStream::Side::add(const PcmBuffer& buffer) {
    const auto* row = reinterpret_cast<const std::uint8_t*>(buffer.channels.front().data());
    converter_->convert(&row, static_cast<int>(buffer.frames()), converted_);
    fed_ += static_cast<double>(buffer.frames()) / TrackFormat::sampleRate;
    std::vector<float>& converted = converted_.channels.front();
    samples_.insert(samples_.end(), converted.begin(), converted.end());
    converted.clear();
}

void EchoFreeStream::Side::keep(std::int64_t most) {
    forget(end() - most);
}

void EchoFreeStream::Side::forget(std::int64_t before) {
    const std::int64_t count = std::clamp<std::int64_t>(before - start_, 0, std::ssize(samples_));
    samples_.erase(samples_.begin(), samples_.begin() + count);
    start_ += count;
}

EchoFilter::Block EchoFreeStream::Side::take(std::int64_t position) {
    EchoFilter::Block taken{};
    const std::int64_t first = std::max(position, start_);
    const std::int64_t last = std::min(position + block, end());
    if (first < last) {
        std::copy(samples_.begin() + (first - start_), samples_.begin() + (last - start_),
                  taken.begin() + (first - position));
    }
    forget(position + block);
    return taken;
}

void EchoFreeStream::add(Speaker speaker, const PcmBuffer& buffer, double at) {
    Side& side = speaker == Speaker::you ? you_ : them_;
    if (side.leaps(at)) {
        if (speaker == Speaker::you) {
            finish();
        } else {
            side.pause();
        }
        side.resume(at);
    }
    side.add(buffer);
    while (you_.start() + block <= you_.end()) {
        const std::int64_t end = you_.start() + block;
        if (them_.end() < end && you_.end() - end < patience) {
            break;
        }
        clean(you_.start());
    }
    them_.keep(longestWait);
}

void EchoFreeStream::finish() {
    you_.pause();
    std::int64_t position = you_.start();
    for (; position < you_.end(); position += block) {
        clean(position);
    }
    for (std::size_t count = held_ > 0 ? EchoRemoval::lag : 0; count > 0; --count, position += block) {
        clean(position);
    }
    held_ = 0;
}

void EchoFreeStream::clean(std::int64_t position) {
    const EchoFilter::Block them = them_.take(position);
    const EchoFilter::Block cleaned = removal_.clean(them, you_.take(position));
    if (held_ < EchoRemoval::lag) {
        ++held_;
        return;
    }
    constexpr std::int64_t delay = static_cast<std::int64_t>(EchoRemoval::lag) * block;
    deliver_({.rate = EchoRemoval::rate, .channels = {{cleaned.begin(), cleaned.end()}}},
             static_cast<double>(position - delay) / EchoRemoval::rate);
}

} // namespace varnic
