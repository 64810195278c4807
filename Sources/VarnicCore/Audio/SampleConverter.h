#pragma once

#include "VarnicCore/Audio/Ffmpeg.h"
#include "VarnicCore/Audio/PcmBuffer.h"

#include <cstdint>

namespace varnic {

/// What goes into a converter, as FFmpeg names it.
struct SampleInput {
    AVSampleFormat samples = AV_SAMPLE_FMT_NONE;
    int rate = 0;
    Ffmpeg::Layout layout;

    [[nodiscard]] bool matches(const AVFrame& frame) const;
};

/// A stream of audio in any form on its way into another rate and number of channels. To one channel, the channels'
/// mean is taken. Not thread-safe.
class SampleConverter {
public:
    /// Throws std::invalid_argument for a pair of forms that cannot be converted.
    SampleConverter(SampleInput input, AudioFormat output);

    [[nodiscard]] const SampleInput& input() const { return input_; }

    /// Appends to `out` what the next `frames` give; `data` as in AVFrame::extended_data. Some audio stays inside until
    /// later calls.
    void convert(const std::uint8_t* const* data, int frames, PcmBuffer& out);

    /// Appends so many frames of silence, as if they had come in.
    void silence(int frames, PcmBuffer& out);

    /// Appends what is still inside, so that all of the output is as long as all of the input. Nothing may follow.
    void finish(PcmBuffer& out);

private:
    std::int64_t append(const std::uint8_t* const* data, int frames, PcmBuffer& out);

    SampleInput input_;
    AudioFormat output_;
    Ffmpeg::Resample resample_;
    std::int64_t framesIn_ = 0;
    std::int64_t framesOut_ = 0;
};

} // namespace varnic
