#include "VarnicCore/Audio/AudioTimeline.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace varnic {
namespace {

using Place = AudioTimeline::Place;

constexpr int rate = 1000;

TEST(AudioTimeline, place_inOrder_runsOn) {
    AudioTimeline timeline(rate);
    EXPECT_EQ(timeline.place(0, 20), (Place{0, 0}));
    EXPECT_EQ(timeline.place(20, 20), (Place{0, 0}));
    EXPECT_EQ(timeline.place(std::nullopt, 20), (Place{0, 0}));
    EXPECT_EQ(timeline.place(75, 20), (Place{0, 0})) << "15 ms late is a wavering stamp";
    EXPECT_EQ(timeline.frames(), 80);
}

TEST(AudioTimeline, place_hole_isSilence) {
    AudioTimeline timeline(rate);
    timeline.place(0, 20);
    EXPECT_EQ(timeline.place(36, 20), (Place{16, 0}));
    EXPECT_EQ(timeline.frames(), 56);
}

TEST(AudioTimeline, place_beforeTheBeginning_isSkipped) {
    AudioTimeline timeline(rate);
    EXPECT_EQ(timeline.place(-30, 20), (Place{0, 20}));
    EXPECT_EQ(timeline.place(-10, 20), (Place{0, 10}));
    EXPECT_EQ(timeline.place(10, 20), (Place{0, 0}));
    EXPECT_EQ(timeline.frames(), 30);
}

TEST(AudioTimeline, place_leaps_beginANewCount) {
    AudioTimeline timeline(rate);
    timeline.place(0, 20);
    EXPECT_EQ(timeline.place(std::int64_t{3601} * rate, 20), (Place{0, 0}));
    EXPECT_EQ(timeline.place(std::int64_t{3601} * rate + 50, 20), (Place{30, 0})) << "counted on from the leap";
    EXPECT_EQ(timeline.place(-5000, 20), (Place{0, 0})) << "a stamp that goes back";
    EXPECT_EQ(timeline.place(std::numeric_limits<std::int64_t>::min(), 20), (Place{0, 0}));
    EXPECT_EQ(timeline.place(std::numeric_limits<std::int64_t>::max(), 20), (Place{0, 0}));
    EXPECT_EQ(timeline.frames(), 150);
}

} // namespace
} // namespace varnic
