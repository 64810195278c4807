#include "VarnicCore/Audio/AudioFiles.h"

#include "VarnicCore/Audio/AudioError.h"
#include "VarnicCore/Audio/AudioReader.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace varnic::AudioFiles {

namespace {

/// Adds up samples of all channels and gives a level for each `hop` frames.
class LevelMeter {
public:
    explicit LevelMeter(std::size_t hop) : hop_(hop) {}

    void add(const PcmBuffer& block) {
        for (std::size_t frame = 0; frame < block.frames();) {
            const std::size_t count = std::min(hop_ - frames_, block.frames() - frame);
            for (const std::vector<float>& row : block.channels) {
                for (std::size_t index = frame; index < frame + count; ++index) {
                    const auto sample = static_cast<double>(row[index]);
                    squares_ += sample * sample;
                }
            }
            samples_ += count * block.channels.size();
            frames_ += count;
            frame += count;
            if (frames_ == hop_) {
                close();
            }
        }
    }

    std::vector<float> levels() && {
        if (frames_ > 0) {
            close();
        }
        return std::move(levels_);
    }

private:
    void close() {
        const double rms = std::sqrt(squares_ / static_cast<double>(samples_));
        levels_.push_back(static_cast<float>(20 * std::log10(std::max(rms, 0.000001))));
        squares_ = 0;
        samples_ = 0;
        frames_ = 0;
    }

    std::size_t hop_;
    std::size_t frames_ = 0;
    std::size_t samples_ = 0;
    double squares_ = 0;
    std::vector<float> levels_;
};

} // namespace

double duration(const std::filesystem::path& file) {
    try {
        return audioLength(file).seconds();
    } catch (const AudioError&) {
        return 0;
    }
}

MonoSamples monoSamples(const std::filesystem::path& file) {
    AudioReader reader = AudioReader::open(file);
    const auto channels = static_cast<float>(reader.format().channels);
    MonoSamples result{{}, static_cast<double>(reader.format().rate)};
    PcmBuffer block;
    while (reader.read(block)) {
        const std::size_t before = result.samples.size();
        result.samples.resize(before + block.frames());
        for (const std::vector<float>& row : block.channels) {
            for (std::size_t index = 0; index < row.size(); ++index) {
                result.samples[before + index] += row[index] / channels;
            }
        }
    }
    return result;
}

std::vector<float> frameLevels(const std::filesystem::path& file, double frame) {
    AudioReader reader = AudioReader::open(file);
    LevelMeter meter(static_cast<std::size_t>(std::max(reader.format().rate * frame, 1.0)));
    PcmBuffer block;
    while (reader.read(block)) {
        meter.add(block);
    }
    return std::move(meter).levels();
}

std::vector<float> envelope(const std::filesystem::path& file, double window) {
    std::vector<float> levels = frameLevels(file, window);
    for (float& level : levels) {
        level = std::clamp((level + 52.0F) / 44.0F, 0.0F, 1.0F);
    }
    return levels;
}

} // namespace varnic::AudioFiles
