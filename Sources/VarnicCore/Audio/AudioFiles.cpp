#include "VarnicCore/Audio/AudioFiles.h"

#include "VarnicCore/Audio/AudioError.h"
#include "VarnicCore/Audio/AudioReader.h"
#include "VarnicCore/Audio/LevelMeter.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace varnic::AudioFiles {

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
    LevelMeter meter(reader.format().rate, frame);
    PcmBuffer block;
    while (reader.read(block)) {
        meter.add(block);
    }
    return meter.finish();
}

std::vector<float> envelope(const std::filesystem::path& file, double window) {
    std::vector<float> levels = frameLevels(file, window);
    for (float& level : levels) {
        level = std::clamp((level + 52.0F) / 44.0F, 0.0F, 1.0F);
    }
    return levels;
}

} // namespace varnic::AudioFiles
