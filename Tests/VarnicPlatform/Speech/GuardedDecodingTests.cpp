#include "VarnicPlatform/Speech/GuardedDecoding.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace varnic {
namespace {

constexpr int rate = SpeechRecognizer::rate;

TEST(GuardedDecoding, decode_textIsCutShort_hearsTheHalvesAndKeepsTheirTimes) {
    TrackLevels track;
    track.levels.assign(500, -20);
    std::fill_n(track.levels.begin() + 205, 20, -50.0F); // a pause behind 4.1 s
    std::vector<double> heard;
    const auto engine = [&heard](std::span<const float> samples) -> Recognition {
        const double seconds = static_cast<double>(samples.size()) / rate;
        heard.push_back(seconds);
        // Five seconds' words fit in; the last half second of more is left out.
        const bool isCutShort = seconds > 5;
        const std::string text = "word" + std::to_string(heard.size());
        return {text, {{text, 0.1, seconds - 0.6, false}}, 2, isCutShort};
    };
    const std::vector<float> samples(std::size_t{9} * rate);
    const std::vector<TimedWord> words = GuardedDecoding::decode(samples, {{0, 9}, {0, 9}}, track, engine);
    EXPECT_EQ(heard.size(), 3U);
    ASSERT_EQ(words.size(), 2U);
    EXPECT_EQ(words[0].text, "word2");
    EXPECT_EQ(words[1].text, "word3");
    EXPECT_NEAR(words[1].start, 4.25, 0.05) << "the cut, and what the engine tells";

    heard.clear();
    EXPECT_EQ(GuardedDecoding::decode(std::span(samples).first(rate), {{0, 1}, {0, 1}}, track,
                                      [&](auto) -> Recognition { return {"Yes", {{"Yes", 0.3, 0.2, false}}, 5, true}; })
                  .at(0)
                  .start,
              0.3)
        << "what is too short to be cut stays";
}

} // namespace
} // namespace varnic
