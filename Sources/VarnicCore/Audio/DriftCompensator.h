#pragma once

#include "VarnicCore/Audio/Ffmpeg.h"
#include "VarnicCore/Audio/PcmBuffer.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace varnic {

/// Keeps a stream of audio in step with the clock that stamps it. A device's own clock runs a little fast or slow; over
/// an hour the count of its samples and the stamps drift apart. It resamples by tiny ratios, so that a sample
/// count is a time again. Its output is at 48,000 Hz and has the input's channels. One thread at a time.
class DriftCompensator {
public:
    /// A piece of output; `at` is the time of its first sample. Pieces never overlap, and leave no gap shorter than
    /// `tolerance`.
    struct Piece {
        double at = 0;
        PcmBuffer sound;
    };

    /// A stamp so many seconds away from where it was expected is a gap or a jump, not drift.
    static constexpr double tolerance = 0.05;

    /// Takes a block whose first sample was heard at `stamp`, in seconds; what lies before time zero or before the end
    /// of earlier output is cut off. Some 16 samples stay inside until the next block. Nothing where nothing comes out.
    [[nodiscard]] std::optional<Piece> compensate(double stamp, const PcmBuffer& block);

private:
    [[nodiscard]] double end() const;
    [[nodiscard]] double landing() const;
    std::size_t restart(double stamp, const PcmBuffer& block, PcmBuffer& out);
    void steer(double error, double duration);
    void resample(const PcmBuffer& block, std::size_t from, PcmBuffer& out);

    Ffmpeg::Resample resample_;
    AudioFormat format_;
    /// The time at which counting began, and the frames of output since.
    double start_ = 0;
    std::int64_t produced_ = 0;
    /// How far the stamps are ahead of the output, smoothed; seconds.
    double error_ = 0;
};

} // namespace varnic
