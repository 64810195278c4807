#include "VarnicCore/Audio/SoundFiles.h"
#include "VarnicCore/Audio/VoiceActivity.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace varnic {
namespace {

using VoiceActivity::Range;

/// Levels by runs: so many frames at a level.
struct Run {
    std::size_t frames;
    float level;
};

std::vector<float> levelsOf(const std::vector<Run>& runs) {
    std::vector<float> levels;
    for (const auto& [frames, level] : runs) {
        levels.insert(levels.end(), frames, level);
    }
    return levels;
}

struct Detection {
    std::string what;
    std::vector<Run> runs;
    std::vector<Range> ranges;
};

TEST(VoiceActivity, detect_levels_findsSpeech) {
    // A frame of a quarter of a second is exact in binary.
    constexpr double frame = 0.25;
    const std::vector<Detection> detections{
        {"nothing", {}, {}},
        {"silence", {{40, -120}}, {}},
        {"a hum at -40 dB needs -30", {{40, -40}}, {}},
        {"just under the lowest threshold", {{20, -120}, {20, -50}}, {}},
        {"just over the lowest threshold", {{20, -120}, {20, -49.9F}}, {{5, 10}}},
        {"voiced from the first frame", {{4, -20}, {20, -90}}, {{0, 1}}},
        {"a threshold over the noise floor", {{20, -60}, {4, -46}, {20, -60}, {4, -44}}, {{11, 12}}},
        {"a pause of exactly the bridge joins", {{4, -20}, {2, -90}, {4, -20}, {20, -90}}, {{0, 2.5}}},
        {"a longer pause does not", {{4, -20}, {3, -90}, {4, -20}, {20, -90}}, {{0, 1}, {1.75, 2.75}}},
        {"a short burst goes", {{9, -90}, {1, -20}, {9, -90}, {2, -20}, {9, -90}}, {{4.75, 5.25}}},
        {"short bursts that join stay", {{9, -90}, {1, -20}, {1, -90}, {1, -20}, {9, -90}}, {{2.25, 3}}},
    };
    for (const auto& [what, runs, ranges] : detections) {
        EXPECT_EQ(VoiceActivity::detect(levelsOf(runs), frame, 0.5, 0.5), ranges) << what;
    }
}

TEST(VoiceActivity, detect_file_findsTheTone) {
    const SoundFiles files;
    const auto file =
        files.make("a.wav", "-f lavfi -i \"aevalsrc='if(between(t,1,2),0.3*sin(3000*t),0)':s=16000:d=4\"");
    const std::vector<Range> ranges = VoiceActivity::detect(file, 0.25, 0.6);
    ASSERT_EQ(ranges.size(), 1U);
    EXPECT_NEAR(ranges[0].start, 1, 0.021);
    EXPECT_NEAR(ranges[0].end, 2, 0.021);
}

} // namespace
} // namespace varnic
