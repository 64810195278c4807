#pragma once

#include "VarnicCore/Audio/AudioDemuxer.h"
#include "VarnicCore/Audio/Ffmpeg.h"

#include <cstdint>
#include <filesystem>
#include <optional>

namespace varnic {

/// The decoded frames of a file's audio, one after another. Not thread-safe.
class FrameDecoder {
public:
    /// Throws AudioError where the file cannot be opened. One whose audio nothing here decodes has no frames.
    explicit FrameDecoder(const std::filesystem::path& file);

    [[nodiscard]] const AudioDemuxer& demuxer() const { return demuxer_; }

    /// Whether nothing decodes the audio, or nothing that there is of it.
    [[nodiscard]] bool isUndecodable(bool hasFrames) const { return !codec_ || (!hasFrames && packets_ > 0); }

    [[nodiscard]] bool isEncrypted() const { return isEncrypted_; }

    /// Replaces the frame by the next one, which is empty and the answer false at the end. Damaged packets are stepped
    /// over.
    bool next(AVFrame& frame);

    /// Goes to a little before the frame of `rate`, far enough for a decoder that builds on what came before; false
    /// where the file cannot be sought in. What no index knows is stepped over without decoding it.
    [[nodiscard]] bool seek(std::int64_t frame, int rate);

    /// Where the last packet begins, in frames of `rate`: of an indexed file only the end is read. `seek` must follow.
    [[nodiscard]] std::optional<std::int64_t> lastPacket(int rate);

private:
    void send();

    AudioDemuxer demuxer_;
    Ffmpeg::Codec codec_;
    Ffmpeg::Packet packet_;
    std::int64_t packets_ = 0;
    bool isEncrypted_ = false;
    bool isDrained_ = false;
};

} // namespace varnic
