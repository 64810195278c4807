#pragma once

#include "VarnicCore/Audio/EchoFilter.h"

#include <array>
#include <cstddef>
#include <span>

namespace varnic {

/// Takes the echo of the far end, which the microphone picks up from the loudspeakers, out of its signal. Double talk
/// stays: only where there is nothing but residual echo there is silence afterwards. A second filter begins anew every
/// few seconds and takes over where it leaves much less: the first one changes what it knows only slowly, and sound
/// systems jump. A copy goes on from what was learnt. Not thread-safe, and copies share a thread.
class EchoRemoval {
public:
    /// Samples a second.
    static constexpr int rate = 16'000;
    static constexpr std::size_t block = EchoFilter::block;
    /// The microphone's signal comes out so many blocks after it went in.
    static constexpr std::size_t lag = 2;

    /// The next block of both sides; gives the microphone's block of `lag` calls before.
    EchoFilter::Block clean(std::span<const float, block> them, std::span<const float, block> you);

    /// Goes to the beginning of another place of the call: what is still inside does not come out.
    void interrupt();

    /// The seconds of far-end speech that were there to learn from, since the path to the microphone was
    /// last found to have changed.
    [[nodiscard]] double learnt() const;

    /// Whether there is a path: the far end's echo was strong enough in the microphone to be taken out.
    [[nodiscard]] bool hasEcho() const;

private:
    /// A filter, and how it fares.
    struct Learner {
        EchoFilter filter;
        /// Blocks that it has learnt from.
        std::size_t learnt = 0;
        /// What it has left of the last second in which the far end was active.
        double left = 0;
    };

    struct Heard {
        EchoFilter::Block samples{};
        /// Whether there is more in it, or around it, than echo.
        bool isOwn = true;
    };

    EchoFilter::Remainder remainder(std::span<const float, block> them, std::span<const float, block> you);

    Learner filter_;
    Learner rival_;
    /// The microphone's energy in the time that `left` is about.
    double came_ = 0;
    /// The last blocks, oldest first.
    std::array<Heard, lag + 1> heard_{};
    std::size_t sinceOwn_ = 0;
    /// Blocks in which most of the microphone's signal was echo.
    std::size_t echoes_ = 0;
};

} // namespace varnic
