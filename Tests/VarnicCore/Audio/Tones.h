#pragma once

#include "VarnicCore/Audio/AudioReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <vector>

namespace varnic {

/// Frames `from` to `from + frames` of a tone of 1 kHz that is at its peak at frame 0, the same in every channel.
inline PcmBuffer toneBuffer(AudioFormat format, std::size_t from, std::size_t frames, float peak = 0.5F) {
    std::vector<float> row;
    for (std::size_t index = from; index < from + frames; ++index) {
        row.push_back(peak * static_cast<float>(std::cos(2 * M_PI * 1000 * static_cast<double>(index) / format.rate)));
    }
    return {format.rate, std::vector(static_cast<std::size_t>(format.channels), row)};
}

/// The first channel of a file.
inline std::vector<float> readAll(AudioReader reader) {
    std::vector<float> all;
    PcmBuffer block;
    while (reader.read(block)) {
        all.insert(all.end(), block.channels.front().begin(), block.channels.front().end());
    }
    return all;
}

/// Whether the samples from `from` on are that tone, allowing for an encoder's losses.
inline ::testing::AssertionResult isToneFrom(const std::vector<float>& samples, std::size_t from, std::size_t count,
                                             double rate) {
    double worst = 0;
    for (std::size_t index = from; index < from + count; ++index) {
        const double expected = 0.5 * std::cos(2 * M_PI * 1000 * static_cast<double>(index) / rate);
        worst = std::max(worst, std::abs(static_cast<double>(samples.at(index)) - expected));
    }
    return worst < 0.06 ? ::testing::AssertionSuccess() : ::testing::AssertionFailure() << "off by " << worst;
}

} // namespace varnic
