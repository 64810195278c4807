#include "VarnicCore/Audio/AudioTimeline.h"

#include <algorithm>

namespace varnic {

namespace {

/// Stamps in whole milliseconds waver by less than this; the shortest packets worth filling are longer.
constexpr double toleranceSeconds = 0.015;
constexpr std::int64_t longestHoleSeconds = 3600;
constexpr std::int64_t furthestBackSeconds = 1;
/// About 380,000 years at 768 kHz: keeps the sums of hostile stamps from overflowing.
constexpr std::int64_t furthestStamp = std::int64_t{1} << 60;

} // namespace

AudioTimeline::Place AudioTimeline::place(std::optional<std::int64_t> start, std::int64_t count) {
    Place result;
    if (start) {
        const std::int64_t stamp = std::clamp(*start, -furthestStamp, furthestStamp);
        if (frames_ == 0 && shift_ == 0 && stamp < 0 && stamp > -rate_ * longestHoleSeconds) {
            result.skip = std::min(count, -stamp);
        }
        const std::int64_t ahead = stamp + result.skip + shift_ - frames_;
        if (ahead > rate_ * longestHoleSeconds || ahead < -rate_ * furthestBackSeconds) {
            shift_ -= ahead;
        } else if (ahead > static_cast<std::int64_t>(toleranceSeconds * rate_)) {
            result.silence = ahead;
        }
    }
    frames_ += result.silence + count - result.skip;
    return result;
}

} // namespace varnic
