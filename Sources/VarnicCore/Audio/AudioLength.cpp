#include "VarnicCore/Audio/AudioDemuxer.h"
#include "VarnicCore/Audio/AudioReader.h"
#include "VarnicCore/Audio/AudioTimeline.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace varnic {

namespace {

/// What the container says to leave out at a packet's ends.
struct Trim {
    std::int64_t front = 0;
    std::int64_t back = 0;
};

Trim trimOf(const AVPacket& packet) {
    std::size_t size = 0;
    const std::uint8_t* data = av_packet_get_side_data(&packet, AV_PKT_DATA_SKIP_SAMPLES, &size);
    const auto word = [data](std::size_t at) {
        return static_cast<std::int64_t>(data[at] | data[at + 1] << 8 | data[at + 2] << 16) |
               static_cast<std::int64_t>(data[at + 3]) << 24;
    };
    return size >= 8 ? Trim{word(0), word(4)} : Trim{};
}

/// The frames that a packet decodes to, before delay is taken off; nothing where only the decoder knows.
std::optional<std::int64_t> packetFrames(const AudioDemuxer& demuxer, const AVPacket& packet, const Trim& trim) {
    const AVStream& stream = demuxer.stream();
    const int rate = stream.codecpar->sample_rate;
    const int byCodec = av_get_audio_frame_duration2(stream.codecpar, packet.size);
    if (byCodec > 0) {
        return std::max<std::int64_t>(byCodec - trim.back, 0);
    }
    // A time in whole milliseconds is too coarse to count frames by. One that is fine enough leaves the padding out.
    const bool exact = stream.time_base.num > 0 && stream.time_base.den / stream.time_base.num >= rate;
    if (packet.duration > 0 && exact) {
        return demuxer.framesOf(packet.duration, rate);
    }
    return std::nullopt;
}

std::optional<std::int64_t> framesOfPackets(AudioDemuxer& demuxer) {
    const int rate = demuxer.stream().codecpar->sample_rate;
    if (rate <= 0) {
        return std::nullopt;
    }
    const auto packet = Ffmpeg::owned<Ffmpeg::Packet>(av_packet_alloc());
    AudioTimeline timeline(rate);
    std::int64_t skip = 0;
    while (demuxer.next(*packet)) {
        // Of a cut packet plain samples can still be read, but no compressed frame.
        const bool plain = av_get_bits_per_sample(demuxer.stream().codecpar->codec_id) > 0;
        if ((packet->flags & AV_PKT_FLAG_CORRUPT) != 0 && !plain) {
            continue;
        }
        const Trim trim = trimOf(*packet);
        const std::optional<std::int64_t> frames = packetFrames(demuxer, *packet, trim);
        if (!frames) {
            return std::nullopt;
        }
        skip += trim.front;
        const std::int64_t front = std::min(skip, *frames);
        skip -= front;
        const std::int64_t left = *frames - front;
        const auto start = demuxer.frameAt(packet->pts, rate);
        if (left > 0) {
            timeline.place(start ? std::optional(*start + front) : std::nullopt, left);
        }
    }
    const std::int64_t frames = timeline.frames();
    const std::optional<std::int64_t> whole = demuxer.framesWithoutPadding(rate);
    return whole && *whole > frames - rate ? std::min(*whole, frames) : frames;
}

AudioLength decodedLength(const std::filesystem::path& file) {
    AudioReader reader = AudioReader::open(file);
    AudioLength length{0, reader.format().rate};
    PcmBuffer block;
    while (reader.read(block)) {
        length.frames += static_cast<std::int64_t>(block.frames());
    }
    return length;
}

} // namespace

AudioLength audioLength(const std::filesystem::path& file) {
    AudioDemuxer demuxer = AudioDemuxer::open(file);
    if (const auto frames = framesOfPackets(demuxer)) {
        return {*frames, demuxer.stream().codecpar->sample_rate};
    }
    return decodedLength(file);
}

} // namespace varnic
