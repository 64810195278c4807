#include "VarnicCore/Audio/LevelMeter.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace varnic {

LevelMeter::LevelMeter(int rate, double seconds) : hop_(static_cast<std::size_t>(std::max(rate * seconds, 1.0))) {}

void LevelMeter::add(const PcmBuffer& block) {
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

std::vector<float> LevelMeter::finish() {
    if (frames_ > 0) {
        close();
    }
    return std::exchange(levels_, {});
}

void LevelMeter::close() {
    const double rms = std::sqrt(squares_ / static_cast<double>(samples_));
    levels_.push_back(static_cast<float>(20 * std::log10(std::max(rms, 0.000001))));
    squares_ = 0;
    samples_ = 0;
    frames_ = 0;
}

} // namespace varnic
