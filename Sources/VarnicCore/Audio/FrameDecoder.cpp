#include "VarnicCore/Audio/FrameDecoder.h"

#include <algorithm>
#include <utility>

namespace varnic {

namespace {

/// Seconds before a place that is sought from which a decoder is fed. Opus asks for 0.08, MP3 builds on some frames.
constexpr double runUp = 0.25;
/// Seconds before that at which reading begins: the stamps on the last page of an Ogg file rest on the page before.
constexpr double stampRunUp = 2;
/// Seconds; keeps hostile lengths from overflowing.
constexpr std::int64_t longestPacket = 60;

Ffmpeg::Codec openCodec(const AVStream& stream) {
    const AVCodec* decoder = avcodec_find_decoder(stream.codecpar->codec_id);
    if (decoder == nullptr) {
        return nullptr;
    }
    auto codec = Ffmpeg::owned<Ffmpeg::Codec>(avcodec_alloc_context3(decoder));
    codec->pkt_timebase = stream.time_base;
    codec->thread_count = 1;
    const bool opened = avcodec_parameters_to_context(codec.get(), stream.codecpar) >= 0 &&
                        avcodec_open2(codec.get(), decoder, nullptr) >= 0;
    return opened ? std::move(codec) : nullptr;
}

} // namespace

FrameDecoder::FrameDecoder(const std::filesystem::path& file)
    : demuxer_(AudioDemuxer::open(file)), codec_(openCodec(demuxer_.stream())),
      packet_(Ffmpeg::owned<Ffmpeg::Packet>(av_packet_alloc())) {}

bool FrameDecoder::next(AVFrame& frame) {
    av_frame_unref(&frame);
    while (codec_) {
        const int result = avcodec_receive_frame(codec_.get(), &frame);
        if (result >= 0 && frame.nb_samples > 0 && frame.sample_rate > 0) {
            return true;
        }
        av_frame_unref(&frame);
        if (result == AVERROR_EOF || (isDrained_ && result < 0)) {
            return false;
        }
        if (result == AVERROR(EAGAIN)) {
            if (demuxer_.next(*packet_)) {
                send();
            } else {
                isDrained_ = true;
                avcodec_send_packet(codec_.get(), nullptr);
            }
        }
    }
    return false;
}

void FrameDecoder::send() {
    ++packets_;
    if (av_packet_get_side_data(packet_.get(), AV_PKT_DATA_ENCRYPTION_INFO, nullptr) != nullptr) {
        isEncrypted_ = true;
    }
    avcodec_send_packet(codec_.get(), packet_.get());
}

bool FrameDecoder::seek(std::int64_t frame, int rate) {
    const std::int64_t from = frame - static_cast<std::int64_t>(runUp * rate);
    if (!codec_ || !demuxer_.seek(from - static_cast<std::int64_t>(stampRunUp * rate), rate)) {
        return false;
    }
    avcodec_flush_buffers(codec_.get());
    isDrained_ = false;
    while (demuxer_.next(*packet_)) {
        const auto start = demuxer_.frameAt(packet_->pts, rate);
        const std::int64_t length = demuxer_.framesOf(packet_->duration, rate);
        if (!start || *start >= from - std::clamp<std::int64_t>(length, 0, longestPacket * rate)) {
            send();
            break;
        }
    }
    return true;
}

std::optional<std::int64_t> FrameDecoder::lastPacket(int rate) {
    std::optional<std::int64_t> last;
    if (demuxer_.seekToLastKnown()) {
        while (demuxer_.next(*packet_)) {
            last = demuxer_.frameAt(packet_->pts, rate);
        }
    }
    return last;
}

} // namespace varnic
