#include "VarnicPlatform/Playback/StretchedSource.h"

namespace varnic {

void StretchedSource::seek(std::int64_t frame) {
    source_.seek(frame);
    stretch_.clear();
    isStretching_ = false;
    isAtEnd_ = false;
}

std::span<const float> StretchedSource::read(double speed) {
    isStretching_ = isStretching_ || speed != 1;
    if (!isStretching_) {
        return source_.read();
    }
    stretch_.setSpeed(speed);
    while (!isAtEnd_) {
        const std::span<const float> samples = source_.read();
        isAtEnd_ = samples.empty();
        if (const auto stretched = isAtEnd_ ? stretch_.rest() : stretch_.stretched(samples); !stretched.empty()) {
            return stretched;
        }
    }
    return {};
}

} // namespace varnic
