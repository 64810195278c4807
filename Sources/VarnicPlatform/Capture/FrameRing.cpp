#include "VarnicPlatform/Capture/FrameRing.h"

#include "VarnicCore/Audio/CaptureSource.h"

#include <algorithm>
#include <array>
#include <span>

namespace varnic {

namespace {

constexpr std::array<float, 1024> silence{};

} // namespace

FrameRing::FrameRing(int channels, std::uint32_t bytes)
    : channels_(static_cast<std::uint32_t>(channels)), bytes_(bytes) {
    spa_ringbuffer_init(&ring_);
}

void FrameRing::push(double stamp, int rate, const float* const* rows, std::uint32_t frames) {
    lastPush_.store(HostClock::now(), std::memory_order_relaxed);
    std::uint32_t index = 0;
    const std::int32_t filled = spa_ringbuffer_get_write_index(&ring_, &index);
    const std::uint64_t needed = sizeof(Header) + std::uint64_t{frames} * channels_ * sizeof(float);
    if (filled < 0 || static_cast<std::uint64_t>(filled) + needed > size()) {
        lost_.fetch_add(frames, std::memory_order_relaxed);
        return;
    }
    const Header header{.stamp = stamp, .rate = rate, .frames = frames};
    write(index, &header, sizeof header);
    for (const float* row : std::span(rows, channels_)) {
        if (row != nullptr) {
            write(index, row, frames * static_cast<std::uint32_t>(sizeof(float)));
            continue;
        }
        for (std::uint32_t left = frames; left > 0;) {
            const auto part = std::min<std::uint32_t>(left, silence.size());
            write(index, silence.data(), part * static_cast<std::uint32_t>(sizeof(float)));
            left -= part;
        }
    }
    spa_ringbuffer_write_update(&ring_, static_cast<std::int32_t>(index));
}

bool FrameRing::pop(double& stamp, PcmBuffer& block) {
    std::uint32_t index = 0;
    if (spa_ringbuffer_get_read_index(&ring_, &index) < static_cast<std::int32_t>(sizeof(Header))) {
        return false;
    }
    Header header{};
    read(index, &header, sizeof header);
    stamp = header.stamp;
    block.rate = header.rate;
    block.channels.resize(channels_);
    for (std::vector<float>& row : block.channels) {
        row.resize(header.frames);
        read(index, row.data(), header.frames * static_cast<std::uint32_t>(sizeof(float)));
    }
    spa_ringbuffer_read_update(&ring_, static_cast<std::int32_t>(index));
    return true;
}

void FrameRing::write(std::uint32_t& index, const void* data, std::uint32_t length) {
    spa_ringbuffer_write_data(&ring_, bytes_.data(), size(), index & (size() - 1), data, length);
    index += length;
}

void FrameRing::read(std::uint32_t& index, void* data, std::uint32_t length) {
    spa_ringbuffer_read_data(&ring_, bytes_.data(), size(), index & (size() - 1), data, length);
    index += length;
}

} // namespace varnic
