#pragma once

#include "VarnicCore/Audio/PcmBuffer.h"

namespace varnic {

/// Converts whole pieces of audio, each by itself: nothing is kept between calls. Any thread.
struct Resampler {
    AudioFormat target;

    /// The piece in the target's rate and channels and of the same length in seconds; many channels become one by their
    /// mean. Throws TranscriberError `failed` with "format" where that cannot be done.
    [[nodiscard]] PcmBuffer convert(const PcmBuffer& buffer) const;
};

} // namespace varnic
