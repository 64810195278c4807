#pragma once

#include <cstdint>
#include <optional>

namespace varnic {

/// Where pieces of audio belong by their time stamps. It counts frames from the beginning of a file and says how much
/// silence is missing before a piece and how much of the piece lies before the beginning.
class AudioTimeline {
public:
    struct Place {
        std::int64_t silence = 0;
        std::int64_t skip = 0;

        bool operator==(const Place&) const = default;
    };

    /// `from` is the frame at which the first piece is to begin.
    explicit AudioTimeline(int rate, std::int64_t from = 0) : rate_(rate), frames_(from) {}

    /// Puts the next piece of `count` frames down; `start` is the frame of its time stamp, if it has one. A piece that
    /// comes a little early or late runs on; a stamp that leaps further than an hour, or back, begins a new count.
    Place place(std::optional<std::int64_t> start, std::int64_t count);

    /// Where the next piece begins: frames from the beginning of the file, silence included.
    [[nodiscard]] std::int64_t frames() const { return frames_; }

private:
    int rate_;
    std::int64_t frames_;
    /// What is added to a stamp since the last leap.
    std::int64_t shift_ = 0;
};

} // namespace varnic
