#include "VarnicCore/Audio/SampleConverter.h"

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <vector>

namespace varnic {

namespace {

/// The most that FFmpeg's converter takes (its SWR_CH_MAX).
constexpr int mostChannels = 64;

/// FFmpeg only reads the layouts, whatever its parameters' types say.
Ffmpeg::Resample makeResample(SampleInput& input, AudioFormat output) {
    Ffmpeg::Layout to = input.layout.value.nb_channels == output.channels ? Ffmpeg::Layout(input.layout.value)
                                                                          : Ffmpeg::Layout::ofChannels(output.channels);
    SwrContext* context = nullptr;
    if (swr_alloc_set_opts2(&context, &to.value, AV_SAMPLE_FMT_FLTP, output.rate, &input.layout.value, input.samples,
                            input.rate, 0, nullptr) < 0) {
        throw std::invalid_argument("unsupported sound format");
    }
    Ffmpeg::Resample resample(context);
    if (output.channels == 1 && input.layout.value.nb_channels > 1) {
        const auto channels = static_cast<std::size_t>(input.layout.value.nb_channels);
        const std::vector<double> mean(channels, 1.0 / static_cast<double>(channels));
        swr_set_matrix(resample.get(), mean.data(), static_cast<int>(channels));
    }
    if (swr_init(resample.get()) < 0) {
        throw std::invalid_argument("unsupported sound format");
    }
    return resample;
}

void resizeRows(PcmBuffer& buffer, std::size_t frames) {
    for (std::vector<float>& row : buffer.channels) {
        row.resize(frames);
    }
}

} // namespace

bool SampleInput::matches(const AVFrame& frame) const {
    return frame.format == samples && frame.sample_rate == rate &&
           av_channel_layout_compare(&frame.ch_layout, &layout.value) == 0;
}

SampleConverter::SampleConverter(SampleInput input, AudioFormat output) : input_(std::move(input)), output_(output) {
    if (input_.rate <= 0 || output.rate <= 0 || output.channels < 1 || output.channels > mostChannels ||
        input_.layout.value.nb_channels < 1 || input_.layout.value.nb_channels > mostChannels) {
        throw std::invalid_argument("unsupported sound format");
    }
    resample_ = makeResample(input_, output_);
}

void SampleConverter::convert(const std::uint8_t* const* data, int frames, PcmBuffer& out) {
    if (frames > 0) {
        framesIn_ += frames;
        framesOut_ += append(data, frames, out);
    }
}

void SampleConverter::silence(int frames, PcmBuffer& out) {
    const int channels = input_.layout.value.nb_channels;
    const int planes = av_sample_fmt_is_planar(input_.samples) != 0 ? channels : 1;
    const int bytes = av_samples_get_buffer_size(nullptr, channels, frames, input_.samples, 1);
    if (bytes <= 0) {
        return;
    }
    std::vector<std::uint8_t> zeros(static_cast<std::size_t>(bytes));
    std::vector<std::uint8_t*> rows(static_cast<std::size_t>(planes));
    av_samples_fill_arrays(rows.data(), nullptr, zeros.data(), channels, frames, input_.samples, 1);
    av_samples_set_silence(rows.data(), 0, frames, channels, input_.samples);
    convert(rows.data(), frames, out);
}

void SampleConverter::finish(PcmBuffer& out) {
    const std::int64_t whole = av_rescale_rnd(framesIn_, output_.rate, input_.rate, AV_ROUND_NEAR_INF);
    while (framesOut_ < whole) {
        const std::int64_t got = append(nullptr, 0, out);
        framesOut_ += got;
        if (got == 0) {
            break;
        }
    }
    // The filter's tail runs past the end; where it falls short by a fraction, the last sample is silent.
    const auto surplus = static_cast<std::ptrdiff_t>(framesOut_ - whole);
    const auto present = static_cast<std::ptrdiff_t>(out.frames());
    resizeRows(out, static_cast<std::size_t>(std::max<std::ptrdiff_t>(present - surplus, 0)));
    framesOut_ = whole;
}

std::int64_t SampleConverter::append(const std::uint8_t* const* data, int frames, PcmBuffer& out) {
    out.rate = output_.rate;
    out.channels.resize(static_cast<std::size_t>(output_.channels));
    const std::size_t before = out.frames();
    const int capacity = std::max(swr_get_out_samples(resample_.get(), frames), 0);
    resizeRows(out, before + static_cast<std::size_t>(capacity));
    std::vector<std::uint8_t*> rows;
    for (std::vector<float>& row : out.channels) {
        rows.push_back(reinterpret_cast<std::uint8_t*>(row.data() + before));
    }
    // FFmpeg's parameter lacks the inner const; it only reads.
    const int got = swr_convert(resample_.get(), rows.data(), capacity, const_cast<const std::uint8_t**>(data), frames);
    resizeRows(out, before + static_cast<std::size_t>(std::max(got, 0)));
    if (got < 0) {
        throw std::invalid_argument("unsupported sound format");
    }
    return got;
}

} // namespace varnic
