#include "VarnicCore/Audio/AudioMix.h"

#include "VarnicCore/Audio/AudioReader.h"
#include "VarnicCore/Audio/SoundFile.h"
#include "VarnicCore/Audio/TranscriberError.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace varnic::AudioMix {

namespace {

constexpr std::size_t chunkFrames = 48'000;
constexpr int stereoBitRate = 128'000;

AudioReader openMono(const std::filesystem::path& file) {
    return AudioReader::openMono(file, TrackFormat::processing.rate);
}

/// One side of a stereo file; silent without a file.
class Side {
public:
    explicit Side(const std::optional<std::filesystem::path>& file) {
        if (file) {
            reader_.emplace(openMono(*file));
        }
    }

    /// Fills the row with the next audio, silence behind its end; gives how much audio there was.
    std::size_t read(std::vector<float>& row) {
        PcmBuffer block;
        while (reader_ && ready_.size() < row.size() && reader_->read(block)) {
            ready_.insert(ready_.end(), block.channels.front().begin(), block.channels.front().end());
        }
        const std::size_t count = std::min(ready_.size(), row.size());
        const auto end = ready_.begin() + static_cast<std::ptrdiff_t>(count);
        std::fill(std::copy(ready_.begin(), end, row.begin()), row.end(), 0.0F);
        ready_.erase(ready_.begin(), end);
        return count;
    }

private:
    std::optional<AudioReader> reader_;
    std::vector<float> ready_;
};

void add(const Clip& clip, std::vector<float>& samples) {
    AudioReader reader = openMono(clip.file);
    auto at = static_cast<std::int64_t>(clip.start * TrackFormat::sampleRate);
    PcmBuffer block;
    while (reader.read(block)) {
        for (const float sample : block.channels.front()) {
            if (at >= 0 && at < static_cast<std::int64_t>(samples.size())) {
                samples[static_cast<std::size_t>(at)] += clip.gain * sample;
            }
            ++at;
        }
    }
}

} // namespace

void stereo(const std::optional<std::filesystem::path>& you, const std::optional<std::filesystem::path>& them,
            const std::filesystem::path& to) {
    if (!you && !them) {
        throw TranscriberError::missingFile();
    }
    Side left(you);
    Side right(them);
    const auto file = SoundFile::createCompressed(to, {TrackFormat::processing.rate, 2}, stereoBitRate);
    while (true) {
        PcmBuffer second{TrackFormat::processing.rate,
                         {std::vector<float>(chunkFrames), std::vector<float>(chunkFrames)}};
        const std::size_t produced = std::max(left.read(second.channels[0]), right.read(second.channels[1]));
        if (produced == 0) {
            break;
        }
        for (std::vector<float>& row : second.channels) {
            row.resize(produced);
        }
        file->write(second);
    }
    file->close();
}

void render(const std::vector<Clip>& clips, double duration, const std::filesystem::path& to, bool compressed) {
    std::vector<float> samples(static_cast<std::size_t>(std::max(duration, 0.0) * TrackFormat::sampleRate));
    for (const Clip& clip : clips) {
        add(clip, samples);
    }
    write(samples, to, compressed);
}

void write(std::span<const float> samples, const std::filesystem::path& to, bool compressed) {
    const auto file = compressed ? SoundFile::createCompressed(to, TrackFormat::processing, TrackFormat::bitRate)
                                 : SoundFile::createPlain(to, TrackFormat::processing);
    while (!samples.empty()) {
        const auto part = samples.first(std::min(samples.size(), chunkFrames));
        file->write({TrackFormat::processing.rate, {std::vector<float>(part.begin(), part.end())}});
        samples = samples.subspan(part.size());
    }
    file->close();
}

} // namespace varnic::AudioMix
