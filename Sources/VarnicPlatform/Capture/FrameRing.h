#pragma once

#include "VarnicCore/Audio/PcmBuffer.h"

#include <spa/utils/ringbuffer.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace varnic {

/// Blocks of audio on their way out of a real-time thread. One thread pushes and one pops; neither locks.
class FrameRing {
public:
    /// Holds blocks of so many channels, about as many bytes as given: a power of two, at most 2^30.
    FrameRing(int channels, std::uint32_t bytes);

    /// Copies a block in; fit for a real-time thread. `rows` has a pointer a channel, null for silence; `stamp` is the
    /// HostClock's time of the first frame. Where there is no room the block is dropped and counted.
    void push(double stamp, int rate, const float* const* rows, std::uint32_t frames);

    /// Takes the oldest block out; false where there is none.
    bool pop(double& stamp, PcmBuffer& block);

    /// Frames dropped so far. Any thread.
    [[nodiscard]] std::uint64_t lostFrames() const { return lost_.load(std::memory_order_relaxed); }

    /// The HostClock's time of the last push, 0 before the first. Any thread.
    [[nodiscard]] double lastPush() const { return lastPush_.load(std::memory_order_relaxed); }

private:
    struct Header {
        double stamp;
        std::int32_t rate;
        std::uint32_t frames;
    };

    [[nodiscard]] std::uint32_t size() const { return static_cast<std::uint32_t>(bytes_.size()); }

    void write(std::uint32_t& index, const void* data, std::uint32_t length);
    void read(std::uint32_t& index, void* data, std::uint32_t length);

    std::uint32_t channels_;
    std::vector<std::byte> bytes_;
    spa_ringbuffer ring_{};
    std::atomic<std::uint64_t> lost_ = 0;
    std::atomic<double> lastPush_ = 0;
};

} // namespace varnic
