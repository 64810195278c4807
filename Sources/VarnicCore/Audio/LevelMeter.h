#pragma once

#include "VarnicCore/Audio/PcmBuffer.h"

#include <cstddef>
#include <vector>

namespace varnic {

/// Turns audio that comes in blocks into one level for each `hop` frames, over all channels: decibels of full scale,
/// not below -120.
class LevelMeter {
public:
    /// Frames of `seconds` at `rate`; at least one sample long.
    LevelMeter(int rate, double seconds);

    void add(const PcmBuffer& block);

    /// All levels; a shorter last frame counts as one.
    std::vector<float> finish();

private:
    void close();

    std::size_t hop_;
    std::size_t frames_ = 0;
    std::size_t samples_ = 0;
    double squares_ = 0;
    std::vector<float> levels_;
};

} // namespace varnic
