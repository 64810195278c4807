#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

namespace varnic {

/// Audio on its way into a real-time thread, in stereo at 48,000 Hz, and the time at which it is heard. Frames are
/// counted from the first ever pushed. One thread at a time pushes and discards, one pops; neither locks.
class PlaybackQueue {
public:
    static constexpr int rate = 48'000;
    static constexpr std::size_t channels = 2;

    /// Copies interleaved samples in; no more than `room` frames.
    void push(std::span<const float> samples);

    [[nodiscard]] std::size_t room() const;

    /// Frames that wait to be heard.
    [[nodiscard]] std::size_t waiting() const;

    /// The number of the next frame pushed.
    [[nodiscard]] std::int64_t end() const { return pushed_.load(std::memory_order_relaxed); }

    /// Drops all that is in the queue: from now on `pop` gives what is pushed later alone.
    void discard() { kept_.store(end(), std::memory_order_release); }

    /// Fills `samples` with what comes next, which is heard from `heardAt` on, a time of the HostClock, and silence
    /// where nothing does. Fit for a real-time thread.
    void pop(std::span<float> samples, double heardAt);

    /// The frame that is heard at a time: from the first kept to the last popped. Any thread.
    [[nodiscard]] std::int64_t heard(double now) const;

private:
    /// A power of two, a little over a second.
    static constexpr std::size_t capacity = std::size_t{1} << 16U;

    std::vector<float> samples_ = std::vector<float>(capacity * channels);
    std::atomic<std::int64_t> pushed_ = 0;
    std::atomic<std::int64_t> popped_ = 0;
    /// What was pushed before this frame is not to be heard.
    std::atomic<std::int64_t> kept_ = 0;
    /// When frame 0 would have been heard, had all since been heard without a break.
    std::atomic<double> origin_ = std::numeric_limits<double>::infinity();
};

} // namespace varnic
