#include "Varnic/Recording/PauseClock.h"

#include <gtest/gtest.h>

namespace varnic {
namespace {

TEST(PauseClock, place_aroundPauses_leavesThemOut) {
    PauseClock clock;
    clock.pause(10);
    clock.pause(12);
    clock.resume(15);
    clock.resume(17);
    clock.pause(20);

    const std::vector<std::pair<double, std::optional<double>>> cases{
        {0, 0},   {9.5, 9.5}, {10, std::nullopt}, {14.9, std::nullopt},
        {15, 10}, {19, 14},   {20, std::nullopt}, {99, std::nullopt},
    };
    for (const auto& [at, place] : cases) {
        EXPECT_EQ(clock.place(at), place) << at;
    }
}

TEST(PauseClock, elapsed_duringPause_standsStill) {
    PauseClock clock;
    EXPECT_DOUBLE_EQ(clock.elapsed(3), 3);
    clock.pause(4);
    EXPECT_TRUE(clock.isPaused());
    EXPECT_DOUBLE_EQ(clock.elapsed(9), 4);
    clock.resume(10);
    EXPECT_FALSE(clock.isPaused());
    EXPECT_DOUBLE_EQ(clock.elapsed(11), 5);
}

} // namespace
} // namespace varnic
