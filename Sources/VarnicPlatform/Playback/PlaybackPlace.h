#pragma once

#include <cmath>
#include <cstdint>
#include <iterator>
#include <vector>

namespace varnic {

/// Which frame of a call is at which frame of a PlaybackQueue, when the speed changes on the way. One thread at a time.
class PlaybackPlace {
public:
    /// From this frame of the queue on it is the call from this frame on.
    void begin(std::int64_t queue, std::int64_t call) { parts_ = {{queue, static_cast<double>(call), 1}}; }

    /// From this frame of the queue on, no earlier than at the last change, a frame of it is so many of the call.
    void setSpeed(std::int64_t queue, double speed) {
        if (speed != parts_.back().speed) {
            parts_.push_back({queue, exactAt(queue), speed});
        }
    }

    /// Where it began, in the call.
    [[nodiscard]] std::int64_t start() const { return std::lround(parts_.front().call); }

    /// The frame of the call at a frame of the queue, which is no earlier than the beginning.
    [[nodiscard]] std::int64_t at(std::int64_t queue) const { return std::lround(exactAt(queue)); }

private:
    struct Part {
        std::int64_t queue = 0;
        double call = 0;
        double speed = 1;
    };

    [[nodiscard]] double exactAt(std::int64_t queue) const {
        auto part = parts_.rbegin();
        while (part->queue > queue && std::next(part) != parts_.rend()) {
            ++part;
        }
        return part->call + static_cast<double>(queue - part->queue) * part->speed;
    }

    std::vector<Part> parts_{Part{}};
};

} // namespace varnic
