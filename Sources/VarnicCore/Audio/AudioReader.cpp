#include "VarnicCore/Audio/AudioReader.h"

#include "VarnicCore/Audio/AudioDemuxer.h"
#include "VarnicCore/Audio/AudioError.h"
#include "VarnicCore/Audio/AudioTimeline.h"
#include "VarnicCore/Audio/SampleConverter.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace varnic {

namespace {

/// Rates outside of this are damage, not sound.
constexpr int lowestRate = 1000;
constexpr int highestRate = 768'000;

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

class AudioReader::Decoder {
public:
    /// Decodes up to the first frame, so that a file without one is told at once. A `rate` or `channels` of 0 in
    /// `asked` stands for the file's own. Throws AudioError.
    Decoder(const std::filesystem::path& file, AudioFormat asked)
        : demuxer_(AudioDemuxer::open(file)), codec_(openCodec(demuxer_.stream())),
          packet_(Ffmpeg::owned<Ffmpeg::Packet>(av_packet_alloc())),
          frame_(Ffmpeg::owned<Ffmpeg::Frame>(av_frame_alloc())),
          following_(Ffmpeg::owned<Ffmpeg::Frame>(av_frame_alloc())) {
        const bool some = codec_ != nullptr && fetch();
        const AVCodecParameters& told = *demuxer_.stream().codecpar;
        rate_ = some ? following_->sample_rate : told.sample_rate;
        const int channels = some ? following_->ch_layout.nb_channels : told.ch_layout.nb_channels;
        if (encrypted_) {
            throw AudioError(AudioError::Kind::protectedFile, file);
        }
        if (codec_ == nullptr || (!some && packets_ > 0) || rate_ < lowestRate || rate_ > highestRate || channels < 1) {
            throw AudioError(AudioError::Kind::noSound, file);
        }
        format_ = {asked.rate > 0 ? asked.rate : rate_, asked.channels > 0 ? asked.channels : channels};
        timeline_ = AudioTimeline(rate_);
        try {
            if (some) {
                converter_.emplace(inputOf(*following_), format_);
            }
        } catch (const std::invalid_argument&) {
            throw AudioError(AudioError::Kind::noSound, file);
        }
    }

    [[nodiscard]] AudioFormat format() const { return format_; }

    [[nodiscard]] int rate() const { return rate_; }

    bool read(PcmBuffer& block) {
        clear(block);
        while (block.frames() == 0 && !finished_) {
            if (silence_ > 0) {
                const auto part = static_cast<int>(std::min<std::int64_t>(silence_, rate_));
                writeSilence(part, block);
                silence_ -= part;
            } else if (frame_->nb_samples > 0) {
                writeFrame(block);
            } else {
                advance(block);
            }
        }
        return block.frames() > 0;
    }

private:
    static SampleInput inputOf(const AVFrame& frame) {
        return {static_cast<AVSampleFormat>(frame.format), frame.sample_rate, Ffmpeg::Layout(frame.ch_layout)};
    }

    void clear(PcmBuffer& block) const {
        block.rate = format_.rate;
        block.channels.resize(static_cast<std::size_t>(format_.channels));
        for (std::vector<float>& row : block.channels) {
            row.clear();
        }
    }

    /// Makes the following frame the current one, knowing whether it is the last, and finds its place.
    void advance(PcmBuffer& block) {
        std::swap(frame_, following_);
        if (frame_->nb_samples == 0) {
            finish(block);
            return;
        }
        fetch();
        begin_ = 0;
        end_ = frame_->nb_samples;
        // A file that changes its rate is counted on in the first one.
        const std::int64_t count = av_rescale(end_, rate_, frame_->sample_rate);
        const AudioTimeline::Place place =
            timeline_.place(demuxer_.frameAt(frame_->best_effort_timestamp, rate_), count);
        silence_ = place.silence;
        begin_ = static_cast<int>(std::min<std::int64_t>(place.skip, end_));
        if (following_->nb_samples == 0) {
            cutPadding();
        }
    }

    void cutPadding() {
        if (const auto whole = demuxer_.framesWithoutPadding(rate_)) {
            const std::int64_t surplus = std::clamp<std::int64_t>(timeline_.frames() - *whole, 0, end_ - begin_);
            // More than one frame of padding is a file whose header lies.
            end_ -= surplus < end_ - begin_ ? static_cast<int>(surplus) : 0;
        }
    }

    void writeFrame(PcmBuffer& block) {
        if (!converter_->input().matches(*frame_) && !changeForm(block)) {
            av_frame_unref(frame_.get());
            return;
        }
        const auto& input = converter_->input();
        const bool planar = av_sample_fmt_is_planar(input.samples) != 0;
        const int planes = planar ? input.layout.value.nb_channels : 1;
        const int step = av_get_bytes_per_sample(input.samples) * (planar ? 1 : input.layout.value.nb_channels);
        std::vector<const std::uint8_t*> rows;
        for (int plane = 0; plane < planes; ++plane) {
            rows.push_back(frame_->extended_data[plane] + static_cast<std::ptrdiff_t>(begin_) * step);
        }
        converter_->convert(rows.data(), end_ - begin_, block);
        av_frame_unref(frame_.get());
    }

    /// `frames` of the file's first rate.
    void writeSilence(int frames, PcmBuffer& block) {
        converter_->silence(static_cast<int>(av_rescale(frames, converter_->input().rate, rate_)), block);
    }

    /// False for a form that nothing converts: that is damage, as long but silent.
    bool changeForm(PcmBuffer& block) {
        try {
            SampleConverter changed(inputOf(*frame_), format_);
            converter_->finish(block);
            converter_ = std::move(changed);
            return true;
        } catch (const std::invalid_argument&) {
            writeSilence(static_cast<int>(av_rescale(end_ - begin_, rate_, frame_->sample_rate)), block);
            return false;
        }
    }

    void finish(PcmBuffer& block) {
        finished_ = true;
        if (converter_) {
            converter_->finish(block);
        }
    }

    /// Decodes one more frame into `following_`, which stays empty at the end. Damaged packets are stepped over.
    bool fetch() {
        av_frame_unref(following_.get());
        while (true) {
            const int result = avcodec_receive_frame(codec_.get(), following_.get());
            if (result >= 0 && following_->nb_samples > 0 && following_->sample_rate > 0) {
                return true;
            }
            av_frame_unref(following_.get());
            if (result == AVERROR_EOF || (drained_ && result < 0)) {
                return false;
            }
            if (result == AVERROR(EAGAIN)) {
                send();
            }
        }
    }

    void send() {
        if (!demuxer_.next(*packet_)) {
            drained_ = true;
            avcodec_send_packet(codec_.get(), nullptr);
            return;
        }
        ++packets_;
        if (av_packet_get_side_data(packet_.get(), AV_PKT_DATA_ENCRYPTION_INFO, nullptr) != nullptr) {
            encrypted_ = true;
        }
        avcodec_send_packet(codec_.get(), packet_.get());
    }

    AudioDemuxer demuxer_;
    Ffmpeg::Codec codec_;
    Ffmpeg::Packet packet_;
    Ffmpeg::Frame frame_;
    Ffmpeg::Frame following_;
    AudioFormat format_;
    int rate_ = 0;
    AudioTimeline timeline_{1};
    std::optional<SampleConverter> converter_;
    /// The part of `frame_` that is still to be written, and the silence before it, in frames of the file's rate.
    int begin_ = 0;
    int end_ = 0;
    std::int64_t silence_ = 0;
    std::int64_t packets_ = 0;
    bool encrypted_ = false;
    bool drained_ = false;
    bool finished_ = false;
};

AudioReader AudioReader::open(const std::filesystem::path& file) {
    return openAs(file, {});
}

AudioReader AudioReader::openMono(const std::filesystem::path& file, int rate) {
    return openAs(file, {rate, 1});
}

AudioReader AudioReader::openAs(const std::filesystem::path& file, AudioFormat asked) {
    return AudioReader(std::make_unique<Decoder>(file, asked));
}

AudioReader::AudioReader(std::unique_ptr<Decoder> decoder) : decoder_(std::move(decoder)) {}

AudioReader::AudioReader(AudioReader&&) noexcept = default;
AudioReader& AudioReader::operator=(AudioReader&&) noexcept = default;
AudioReader::~AudioReader() = default;

AudioFormat AudioReader::format() const {
    return decoder_->format();
}

bool AudioReader::read(PcmBuffer& block) {
    return decoder_->read(block);
}

} // namespace varnic
