#include "VarnicCore/Audio/AudioReader.h"

#include "VarnicCore/Audio/AudioError.h"
#include "VarnicCore/Audio/AudioTimeline.h"
#include "VarnicCore/Audio/FrameDecoder.h"
#include "VarnicCore/Audio/SampleConverter.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace varnic {

namespace {

/// Rates outside of this are damage, not audio.
constexpr int lowestRate = 1000;
constexpr int highestRate = 768'000;
/// A last time stamp after so long is no measure of a file's length.
constexpr int longestHours = 24;

} // namespace

class AudioReader::Decoder {
public:
    /// Decodes up to the first frame, so that a file without one is told at once. A `rate` or `channels` of 0 in
    /// `asked` stands for the file's own. Throws AudioError.
    Decoder(const std::filesystem::path& file, AudioFormat asked)
        : decoder_(file), frame_(Ffmpeg::owned<Ffmpeg::Frame>(av_frame_alloc())),
          following_(Ffmpeg::owned<Ffmpeg::Frame>(av_frame_alloc())) {
        const bool some = decoder_.next(*following_);
        const AVCodecParameters& told = *decoder_.demuxer().stream().codecpar;
        rate_ = some ? following_->sample_rate : told.sample_rate;
        const int channels = some ? following_->ch_layout.nb_channels : told.ch_layout.nb_channels;
        if (decoder_.isEncrypted()) {
            throw AudioError(AudioError::Kind::protectedFile, file);
        }
        if (decoder_.isUndecodable(some) || rate_ < lowestRate || rate_ > highestRate || channels < 1) {
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
            leaveOut(block);
        }
        return block.frames() > 0;
    }

    void seek(std::int64_t frame) {
        const std::int64_t place = std::max<std::int64_t>(frame, 0);
        const std::int64_t wanted = av_rescale(place, rate_, format_.rate);
        // What a file leaves out at its beginning it tells only there; elsewhere the stamps tell the place.
        const bool isNearBeginning = wanted < rate_;
        if (isNearBeginning || !resume(wanted, false)) {
            resume(0, true);
        }
        unwanted_ = place - av_rescale(timeline_.frames(), format_.rate, rate_);
    }

    std::int64_t length() {
        const std::int64_t stamp = decoder_.lastPacket(rate_).value_or(0);
        const bool isCredible = stamp > 0 && stamp < std::int64_t{longestHours} * 3600 * rate_;
        const std::int64_t last = isCredible ? av_rescale(stamp, format_.rate, rate_) : 0;
        seek(last);
        std::int64_t frames = last;
        PcmBuffer block;
        while (read(block)) {
            frames += static_cast<std::int64_t>(block.frames());
        }
        seek(0);
        return frames;
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

    void leaveOut(PcmBuffer& block) {
        const std::int64_t part = std::min(unwanted_, static_cast<std::int64_t>(block.frames()));
        for (std::vector<float>& row : block.channels) {
            row.erase(row.begin(), row.begin() + part);
        }
        unwanted_ -= part;
    }

    /// Reads on from a little before the frame of the file's rate, or from the beginning. False where that is not
    /// possible.
    bool resume(std::int64_t wanted, bool isBeginning) {
        const bool found = decoder_.seek(wanted, rate_) && decoder_.next(*following_);
        const auto start = found ? decoder_.demuxer().frameAt(following_->best_effort_timestamp, rate_) : std::nullopt;
        if (!isBeginning && found && (!start || *start < 0 || *start > wanted)) {
            return false;
        }
        av_frame_unref(frame_.get());
        timeline_ = AudioTimeline(rate_, isBeginning ? 0 : start.value_or(wanted));
        silence_ = 0;
        finished_ = !found;
        if (converter_) {
            converter_.emplace(SampleInput{converter_->input().samples, converter_->input().rate,
                                           Ffmpeg::Layout(converter_->input().layout.value)},
                               format_);
        }
        return true;
    }

    /// Makes the following frame the current one, knowing whether it is the last, and finds its place.
    void advance(PcmBuffer& block) {
        std::swap(frame_, following_);
        if (frame_->nb_samples == 0) {
            finish(block);
            return;
        }
        decoder_.next(*following_);
        begin_ = 0;
        end_ = frame_->nb_samples;
        // A file that changes its rate is counted on in the first one.
        const std::int64_t count = av_rescale(end_, rate_, frame_->sample_rate);
        const AudioTimeline::Place place =
            timeline_.place(decoder_.demuxer().frameAt(frame_->best_effort_timestamp, rate_), count);
        silence_ = place.silence;
        begin_ = static_cast<int>(std::min<std::int64_t>(place.skip, end_));
        if (following_->nb_samples == 0) {
            cutPadding();
        }
    }

    void cutPadding() {
        if (const auto whole = decoder_.demuxer().framesWithoutPadding(rate_)) {
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

    FrameDecoder decoder_;
    Ffmpeg::Frame frame_;
    /// The next one, empty behind the last.
    Ffmpeg::Frame following_;
    AudioFormat format_;
    int rate_ = 0;
    AudioTimeline timeline_{1};
    std::optional<SampleConverter> converter_;
    /// The part of `frame_` that is still to be written, and the silence before it, in frames of the file's rate.
    int begin_ = 0;
    int end_ = 0;
    std::int64_t silence_ = 0;
    /// Frames that are still to be left out before the place that was sought, in the rate of the blocks.
    std::int64_t unwanted_ = 0;
    bool finished_ = false;
};

AudioReader AudioReader::open(const std::filesystem::path& file) {
    return openAs(file, {});
}

AudioReader AudioReader::openMono(const std::filesystem::path& file, int rate) {
    return openAs(file, {rate, 1});
}

AudioReader AudioReader::openUpToStereo(const std::filesystem::path& file, int rate) {
    AudioReader reader = openAs(file, {rate, 0});
    return reader.format().channels > 2 ? openAs(file, {rate, 2}) : std::move(reader);
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

void AudioReader::seek(std::int64_t frame) {
    decoder_->seek(frame);
}

std::int64_t AudioReader::length() {
    return decoder_->length();
}

bool AudioReader::read(PcmBuffer& block) {
    return decoder_->read(block);
}

} // namespace varnic
