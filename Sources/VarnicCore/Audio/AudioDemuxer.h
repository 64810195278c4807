#pragma once

#include "VarnicCore/Audio/Ffmpeg.h"

#include <cstdint>
#include <filesystem>
#include <optional>

namespace varnic {

/// An open file, and the packets of the one audio stream in it that is read. Not thread-safe.
class AudioDemuxer {
public:
    /// Throws AudioError. Opens regular files of the kinds of its own list alone, nothing they refer to and nothing on
    /// the network.
    static AudioDemuxer open(const std::filesystem::path& file);

    [[nodiscard]] const AVStream& stream() const { return *stream_; }

    /// Gives the next packet of the stream, stepping over damage; false at the end of what is readable.
    bool next(AVPacket& packet);

    /// Makes `next` go on at the last packet that the file's index knows at or before the frame of `rate`; false where
    /// the file cannot be sought in. Before the first packet it is the first.
    [[nodiscard]] bool seek(std::int64_t frame, int rate);
    /// The same as late as the file's head and index tell: at the end, or wherever their knowledge ends.
    [[nodiscard]] bool seekToLastKnown();

    /// A time of the stream as a frame of `rate`, counted from the beginning of the file; nothing for no time.
    [[nodiscard]] std::optional<std::int64_t> frameAt(std::int64_t time, int rate) const;

    /// A length of time of the stream in frames of `rate`.
    [[nodiscard]] std::int64_t framesOf(std::int64_t duration, int rate) const;

    /// How many frames of `rate` there are before the encoder's padding at the end, where the file tells that apart
    /// from its packets. Final only after the last packet.
    [[nodiscard]] std::optional<std::int64_t> framesWithoutPadding(int rate) const;

private:
    AudioDemuxer(Ffmpeg::Format format, AVStream* stream);

    [[nodiscard]] bool seekTo(std::int64_t time);

    Ffmpeg::Format format_;
    AVStream* stream_;
    /// The stream's time at which the file begins.
    std::int64_t origin_ = 0;
    bool isMp4_ = false;
};

} // namespace varnic
