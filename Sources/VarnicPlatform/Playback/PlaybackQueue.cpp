#include "VarnicPlatform/Playback/PlaybackQueue.h"

#include <algorithm>

namespace varnic {

void PlaybackQueue::push(std::span<const float> samples) {
    const std::int64_t at = end();
    const std::size_t begin = static_cast<std::size_t>(at) % capacity * channels;
    const std::size_t first = std::min(samples.size(), samples_.size() - begin);
    std::ranges::copy(samples.first(first), samples_.begin() + static_cast<std::ptrdiff_t>(begin));
    std::ranges::copy(samples.subspan(first), samples_.begin());
    pushed_.store(at + static_cast<std::int64_t>(samples.size() / channels), std::memory_order_release);
}

std::size_t PlaybackQueue::room() const {
    return capacity - static_cast<std::size_t>(end() - popped_.load(std::memory_order_acquire));
}

std::size_t PlaybackQueue::waiting() const {
    const std::int64_t from = std::max(popped_.load(std::memory_order_relaxed), kept_.load(std::memory_order_relaxed));
    return static_cast<std::size_t>(end() - from);
}

void PlaybackQueue::pop(std::span<float> samples, double heardAt) {
    // What is kept is read first: it has been pushed up to there at least.
    const std::int64_t from = std::max(kept_.load(std::memory_order_acquire), popped_.load(std::memory_order_relaxed));
    const auto there = static_cast<std::size_t>(pushed_.load(std::memory_order_acquire) - from);
    const auto wanted = samples.first(std::min(there * channels, samples.size()));
    const std::span<const float> ring = samples_;
    const std::size_t begin = static_cast<std::size_t>(from) % capacity * channels;
    const std::size_t first = std::min(wanted.size(), ring.size() - begin);
    std::ranges::copy(ring.subspan(begin, first), wanted.begin());
    std::ranges::copy(ring.first(wanted.size() - first), wanted.begin() + static_cast<std::ptrdiff_t>(first));
    std::ranges::fill(samples.subspan(wanted.size()), 0.0F);
    if (!wanted.empty()) {
        origin_.store(heardAt - static_cast<double>(from) / rate, std::memory_order_relaxed);
    }
    popped_.store(from + static_cast<std::int64_t>(wanted.size() / channels), std::memory_order_release);
}

std::int64_t PlaybackQueue::heard(double now) const {
    // In the order opposite to that of pop: so the origin is never older than what is said to be popped.
    const std::int64_t popped = popped_.load(std::memory_order_acquire);
    const double passed = (now - origin_.load(std::memory_order_relaxed)) * rate;
    const double latest = std::min(passed, static_cast<double>(popped));
    const auto kept = static_cast<double>(kept_.load(std::memory_order_relaxed));
    return static_cast<std::int64_t>(std::max(latest, kept));
}

} // namespace varnic
