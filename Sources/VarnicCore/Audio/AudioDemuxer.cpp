#include "VarnicCore/Audio/AudioDemuxer.h"

#include "VarnicCore/Audio/AudioError.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace varnic {

namespace {

/// The kinds of file that people keep audio in. None of them can name another file to be read: playlists, scripts and
/// picture sequences are out, as are FFmpeg's many readers of old games' files.
constexpr const char* formats = "mov,mp4,m4a,3gp,matroska,webm,ogg,wav,w64,aiff,caf,au,mp3,aac,flac,wv,ape,tta,amr,asf,"
                                "avi,mpegts,mpeg,flv,ac3,eac3";
constexpr const char* codecs =
    "aac,aac_latm,mp1float,mp2float,mp3float,mp1,mp2,mp3,vorbis,opus,flac,alac,ape,tta,wavpack,ac3,eac3,amrnb,amrwb,"
    "wmav1,wmav2,wmapro,wmavoice,wmalossless,gsm,gsm_ms,adpcm_ms,adpcm_ima_wav,adpcm_ima_qt,pcm_alaw,pcm_mulaw,"
    "pcm_u8,pcm_s8,pcm_s16le,pcm_s16be,pcm_u16le,pcm_u16be,pcm_s24le,pcm_s24be,pcm_s32le,pcm_s32be,pcm_f32le,"
    "pcm_f32be,pcm_f64le,pcm_f64be,pcm_bluray,pcm_dvd";

/// Consecutive damaged places after which the rest of a file counts as unreadable.
constexpr int mostDamage = 1000;

void requireReadable(const std::filesystem::path& file) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(file, error);
    if (status.type() == std::filesystem::file_type::not_found) {
        throw AudioError(AudioError::Kind::missing, file);
    }
    if (!std::filesystem::is_regular_file(status)) {
        throw AudioError(AudioError::Kind::unreadable, file);
    }
    if (std::filesystem::file_size(file, error) == 0) {
        throw AudioError(AudioError::Kind::empty, file);
    }
}

Ffmpeg::Format openFormat(const std::filesystem::path& file) {
    AVDictionary* options = nullptr;
    av_dict_set(&options, "format_whitelist", formats, 0);
    av_dict_set(&options, "codec_whitelist", codecs, 0);
    av_dict_set(&options, "protocol_whitelist", "file", 0);
    AVFormatContext* format = nullptr;
    // The prefix keeps a colon in the name from being taken for a protocol.
    const std::string url = "file:" + file.string();
    const int result = avformat_open_input(&format, url.c_str(), nullptr, &options);
    av_dict_free(&options);
    if (result < 0) {
        const bool denied = result == AVERROR(EACCES) || result == AVERROR(EPERM);
        throw AudioError(denied ? AudioError::Kind::unreadable : AudioError::Kind::noSound, file);
    }
    return Ffmpeg::Format(format);
}

bool isProtected(const AVStream& stream) {
    const std::uint32_t tag = stream.codecpar->codec_tag;
    return av_stream_get_side_data(&stream, AV_PKT_DATA_ENCRYPTION_INIT_INFO, nullptr) != nullptr ||
           tag == MKTAG('e', 'n', 'c', 'a') || tag == MKTAG('d', 'r', 'm', 's');
}

} // namespace

AudioDemuxer AudioDemuxer::open(const std::filesystem::path& file) {
    // FFmpeg's log belongs to the process; what it has to say reaches the user as an error or not at all.
    av_log_set_level(AV_LOG_QUIET);
    requireReadable(file);
    Ffmpeg::Format format = openFormat(file);
    const int found = avformat_find_stream_info(format.get(), nullptr) < 0
                          ? -1
                          : av_find_best_stream(format.get(), AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
    if (found < 0) {
        throw AudioError(AudioError::Kind::noSound, file);
    }
    AVStream* stream = format->streams[found];
    if (isProtected(*stream)) {
        throw AudioError(AudioError::Kind::protectedFile, file);
    }
    for (unsigned index = 0; index < format->nb_streams; ++index) {
        if (format->streams[index] != stream) {
            format->streams[index]->discard = AVDISCARD_ALL;
        }
    }
    return {std::move(format), stream};
}

AudioDemuxer::AudioDemuxer(Ffmpeg::Format format, AVStream* stream) : format_(std::move(format)), stream_(stream) {
    const std::string_view name = format_->iformat->name;
    isMp4_ = name.find("mp4") != std::string_view::npos;
    // MP4 and Matroska count from 0 by definition. Elsewhere the file begins with its earliest stream; a start before 0
    // is the encoder's delay.
    const bool countsFromZero = isMp4_ || name.find("matroska") != std::string_view::npos;
    if (!countsFromZero && format_->start_time != AV_NOPTS_VALUE) {
        const std::int64_t start = std::max<std::int64_t>(format_->start_time, 0);
        origin_ = av_rescale_q(start, AVRational{1, AV_TIME_BASE}, stream_->time_base);
    }
}

bool AudioDemuxer::next(AVPacket& packet) {
    for (int damage = 0; damage < mostDamage; ++damage) {
        av_packet_unref(&packet);
        const int result = av_read_frame(format_.get(), &packet);
        if (result == AVERROR_EOF || (result < 0 && format_->pb != nullptr && avio_feof(format_->pb) != 0)) {
            return false;
        }
        if (result >= 0) {
            if (packet.stream_index == stream_->index) {
                return true;
            }
            damage = -1;
        }
    }
    return false;
}

bool AudioDemuxer::seek(std::int64_t frame, int rate) {
    std::int64_t time = av_rescale_q(frame, AVRational{1, rate}, stream_->time_base);
    return !__builtin_add_overflow(time, origin_, &time) && seekTo(time);
}

bool AudioDemuxer::seekToLastKnown() {
    const int entries = avformat_index_get_entries_count(stream_);
    if (isMp4_ && entries > 0) {
        return seekTo(avformat_index_get_entry(stream_, entries - 1)->timestamp);
    }
    std::int64_t end = 0;
    return stream_->duration > 0 && !__builtin_add_overflow(origin_, stream_->duration, &end) && seekTo(end);
}

bool AudioDemuxer::seekTo(std::int64_t time) {
    // Packets of an encoder's delay lie before the beginning.
    std::int64_t first = stream_->start_time == AV_NOPTS_VALUE ? 0 : stream_->start_time;
    if (const AVIndexEntry* entry = avformat_index_get_entry(stream_, 0)) {
        first = std::min(first, entry->timestamp);
    }
    return av_seek_frame(format_.get(), stream_->index, std::max(time, first), AVSEEK_FLAG_BACKWARD) >= 0;
}

std::optional<std::int64_t> AudioDemuxer::frameAt(std::int64_t time, int rate) const {
    if (time == AV_NOPTS_VALUE || __builtin_sub_overflow(time, origin_, &time)) {
        return std::nullopt;
    }
    return framesOf(time, rate);
}

std::int64_t AudioDemuxer::framesOf(std::int64_t duration, int rate) const {
    return av_rescale_q_rnd(duration, stream_->time_base, AVRational{1, rate}, AV_ROUND_NEAR_INF);
}

std::optional<std::int64_t> AudioDemuxer::framesWithoutPadding(int rate) const {
    std::int64_t end = 0;
    if (!isMp4_ || stream_->duration <= 0 || stream_->start_time == AV_NOPTS_VALUE ||
        __builtin_add_overflow(stream_->start_time, stream_->duration, &end)) {
        return std::nullopt;
    }
    return framesOf(end, rate);
}

} // namespace varnic
