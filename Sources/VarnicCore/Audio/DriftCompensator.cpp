#include "VarnicCore/Audio/DriftCompensator.h"

extern "C" {
#include <libavutil/opt.h>
}

#include <algorithm>
#include <cmath>
#include <vector>

namespace varnic {

namespace {

/// Seconds over which errors are averaged, against the jitter of stamps, and over which one is made good. With four
/// times the first for the second the loop is critically damped. A clock that is 0.02 % off then settles at 4 ms.
constexpr double smoothing = 5;
constexpr double correctionTime = 4 * smoothing;
/// The strongest change of pitch; well under what can be heard.
constexpr double strongest = 0.002;

Ffmpeg::Resample makeResample(AudioFormat format) {
    auto layout = Ffmpeg::Layout::ofChannels(format.channels);
    SwrContext* context = nullptr;
    swr_alloc_set_opts2(&context, &layout.value, AV_SAMPLE_FMT_FLTP, static_cast<int>(TrackFormat::sampleRate),
                        &layout.value, AV_SAMPLE_FMT_FLTP, format.rate, 0, nullptr);
    auto resample = Ffmpeg::owned<Ffmpeg::Resample>(context);
    // The filter is in the path from the beginning, since it would click where it came in later; it interpolates
    // between its phases, since steps between them are heard as noise.
    av_opt_set_int(context, "flags", SWR_FLAG_RESAMPLE, 0);
    av_opt_set_int(context, "exact_rational", 0, 0);
    av_opt_set_int(context, "linear_interp", 1, 0);
    return swr_init(context) < 0 ? nullptr : std::move(resample);
}

void appendSilence(PcmBuffer& buffer, std::size_t frames) {
    for (std::vector<float>& row : buffer.channels) {
        row.resize(row.size() + frames);
    }
}

} // namespace

std::optional<DriftCompensator::Piece> DriftCompensator::compensate(double stamp, const PcmBuffer& block) {
    if (block.frames() == 0 || block.rate <= 0 || !std::isfinite(stamp)) {
        return std::nullopt;
    }
    PcmBuffer out{.rate = static_cast<int>(TrackFormat::sampleRate),
                  .channels = std::vector<std::vector<float>>(block.channels.size())};
    double at = end();
    std::size_t from = 0;
    if (!resample_ || block.format() != format_ || std::abs(stamp - landing()) > tolerance) {
        from = restart(stamp, block, out);
        at = start_;
    } else {
        steer(stamp - landing(), static_cast<double>(block.frames()) / block.rate);
    }
    if (resample_ && from < block.frames()) {
        resample(block, from, out);
    }
    produced_ += static_cast<std::int64_t>(out.frames());
    return out.frames() == 0 ? std::nullopt : std::optional(Piece{.at = at, .sound = std::move(out)});
}

/// Where the output ends.
double DriftCompensator::end() const {
    return start_ + static_cast<double>(produced_) / TrackFormat::sampleRate;
}

/// Where the next sample to come in will be heard in the output.
double DriftCompensator::landing() const {
    constexpr std::int64_t units = 1'000'000'000;
    return end() + static_cast<double>(swr_get_delay(resample_.get(), units)) / static_cast<double>(units);
}

/// Begins to count anew at the stamp, or where the output ends if that is later. Gives how many of the block's frames
/// are too late for that.
std::size_t DriftCompensator::restart(double stamp, const PcmBuffer& block, PcmBuffer& out) {
    const double before = end();
    const double late = std::max(before - stamp, 0.0) * block.rate;
    const auto skipped = static_cast<std::size_t>(std::min(std::round(late), static_cast<double>(block.frames())));
    format_ = block.format();
    error_ = 0;
    produced_ = 0;
    start_ = std::max(stamp, before);
    if (skipped == block.frames()) {
        resample_.reset();
        return skipped;
    }
    if (start_ - before < tolerance) {
        appendSilence(out, static_cast<std::size_t>(std::lround((start_ - before) * TrackFormat::sampleRate)));
        start_ = before;
    }
    resample_ = makeResample(format_);
    return skipped;
}

/// Sets the ratio for the coming block by how far its stamp is ahead of the output.
void DriftCompensator::steer(double error, double duration) {
    constexpr int distance = 480'000;
    error_ += (error - error_) * std::min(duration / smoothing, 1.0);
    const double ratio = std::clamp(error_ / correctionTime, -strongest, strongest);
    swr_set_compensation(resample_.get(), static_cast<int>(std::lround(ratio * distance)), distance);
}

void DriftCompensator::resample(const PcmBuffer& block, std::size_t from, PcmBuffer& out) {
    const auto frames = static_cast<int>(block.frames() - from);
    const int capacity = std::max(swr_get_out_samples(resample_.get(), frames), 0);
    const std::size_t before = out.frames();
    appendSilence(out, static_cast<std::size_t>(capacity));
    std::vector<const std::uint8_t*> rows;
    std::vector<std::uint8_t*> outRows;
    for (std::size_t channel = 0; channel < block.channels.size(); ++channel) {
        rows.push_back(reinterpret_cast<const std::uint8_t*>(block.channels[channel].data() + from));
        outRows.push_back(reinterpret_cast<std::uint8_t*>(out.channels[channel].data() + before));
    }
    const int got = std::max(swr_convert(resample_.get(), outRows.data(), capacity, rows.data(), frames), 0);
    for (std::vector<float>& row : out.channels) {
        row.resize(before + static_cast<std::size_t>(got));
    }
}

} // namespace varnic
