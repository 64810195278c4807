#include "VarnicCore/Audio/VoiceActivity.h"

#include "VarnicCore/Audio/AudioFiles.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace varnic::VoiceActivity {

namespace {

/// 15 dB above the noise floor, the tenth percentile, within limits.
float thresholdFor(std::vector<float> levels) {
    const auto floor = levels.begin() + static_cast<std::ptrdiff_t>(levels.size() / 10);
    std::ranges::nth_element(levels, floor);
    return std::clamp(*floor + 15.0F, -50.0F, -30.0F);
}

std::vector<Range> voicedRuns(const std::vector<float>& levels, double frame, float threshold) {
    std::vector<Range> runs;
    std::optional<std::size_t> start;
    for (std::size_t index = 0; index <= levels.size(); ++index) {
        const bool voiced = index < levels.size() && levels[index] > threshold;
        if (voiced && !start) {
            start = index;
        } else if (!voiced && start) {
            runs.push_back({static_cast<double>(*start) * frame, static_cast<double>(index) * frame});
            start.reset();
        }
    }
    return runs;
}

} // namespace

std::vector<Range> detect(const std::filesystem::path& file, double minSpeech, double bridge) {
    return detect(AudioFiles::frameLevels(file, frameSeconds), frameSeconds, minSpeech, bridge);
}

std::vector<Range> detect(const std::vector<float>& levels, double frame, double minSpeech, double bridge) {
    if (levels.empty()) {
        return {};
    }
    std::vector<Range> merged;
    for (const Range& run : voicedRuns(levels, frame, thresholdFor(levels))) {
        if (!merged.empty() && run.start - merged.back().end <= bridge) {
            merged.back().end = run.end;
        } else {
            merged.push_back(run);
        }
    }
    std::erase_if(merged, [minSpeech](const Range& range) { return range.end - range.start < minSpeech; });
    return merged;
}

} // namespace varnic::VoiceActivity
