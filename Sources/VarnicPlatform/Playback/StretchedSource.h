#pragma once

#include "VarnicPlatform/Playback/PlaybackSource.h"
#include "VarnicPlatform/Playback/TimeStretch.h"

#include <cstdint>
#include <span>
#include <utility>

namespace varnic {

/// A PlaybackSource that is read at any speed, with its pitch kept. At speed 1 it gives exactly what the source does,
/// unless another speed came before since the last `seek`. One thread at a time.
class StretchedSource {
public:
    StretchedSource() = default;

    explicit StretchedSource(PlaybackSource source) : source_(std::move(source)) {}

    /// Frames of the source.
    [[nodiscard]] std::int64_t length() const { return source_.length(); }

    /// Makes `read` go on at this frame of the source.
    void seek(std::int64_t frame);

    /// Gives the next samples at this speed, some hundredths of a second, valid until the next call; none at the end.
    /// A change of speed holds for what is given from here on and is not heard as a break.
    std::span<const float> read(double speed);

private:
    PlaybackSource source_;
    TimeStretch stretch_;
    bool isStretching_ = false;
    bool isAtEnd_ = false;
};

} // namespace varnic
