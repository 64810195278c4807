#pragma once

#include "VarnicCore/Audio/AudioReader.h"

#include <gtest/gtest.h>

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

/// Whether the samples from `from` on are that tone, allowing for an encoder's losses but not for a shift by a sample.
inline ::testing::AssertionResult isToneFrom(const std::vector<float>& samples, std::size_t from, std::size_t count,
                                             double rate) {
    double squares = 0;
    for (std::size_t index = from; index < from + count; ++index) {
        const double expected = 0.5 * std::cos(2 * M_PI * 1000 * static_cast<double>(index) / rate);
        squares += std::pow(static_cast<double>(samples.at(index)) - expected, 2);
    }
    const double off = std::sqrt(squares / static_cast<double>(count));
    return off < 0.02 ? ::testing::AssertionSuccess() : ::testing::AssertionFailure() << "off by " << off;
}

} // namespace varnic
