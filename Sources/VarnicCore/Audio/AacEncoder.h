#pragma once

#include "VarnicCore/Audio/Ffmpeg.h"
#include "VarnicCore/Audio/Mp4Boxes.h"
#include "VarnicCore/Audio/PcmBuffer.h"

#include <cstdint>
#include <vector>

namespace varnic {

/// Turns audio into AAC packets. Not thread-safe.
class AacEncoder {
public:
    /// `bitRate` is bits a second of all channels. Throws std::runtime_error where FFmpeg has no AAC encoder.
    AacEncoder(AudioFormat format, int bitRate);

    /// What players must know of the packets.
    [[nodiscard]] const Mp4::Track& track() const { return track_; }

    /// Appends to the lists what becomes ready; the last frames stay inside. The audio must be in the encoder's format.
    void encode(const PcmBuffer& sound, std::vector<Mp4::Packet>& packets, Bytes& bytes);

    /// Appends the rest, so that all packets last as long as delay and audio together. Nothing may follow.
    void finish(std::vector<Mp4::Packet>& packets, Bytes& bytes);

private:
    void send(const AVFrame* frame, std::vector<Mp4::Packet>& packets, Bytes& bytes);

    Ffmpeg::Codec codec_;
    Ffmpeg::Frame frame_;
    Ffmpeg::Packet packet_;
    Mp4::Track track_;
    int filled_ = 0;
    std::int64_t framesIn_ = 0;
    std::int64_t framesOut_ = 0;
};

} // namespace varnic
