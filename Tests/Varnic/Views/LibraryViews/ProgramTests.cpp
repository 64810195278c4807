#include "Varnic/Views/Program/QuitRule.h"
#include "Varnic/Views/Program/Sounds.h"
#include "Varnic/Views/Program/WindowPlace.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

namespace varnic {
namespace {

TEST(QuitRule, nobody_is_left_with_a_program_that_does_not_show) {
    EXPECT_TRUE(QuitRule::shouldQuit({}));
    EXPECT_FALSE(QuitRule::shouldQuit({.isWindowVisible = true}));
    EXPECT_FALSE(QuitRule::shouldQuit({.hasTray = true}));
    EXPECT_FALSE(QuitRule::shouldQuit({.isRecording = true}));
    EXPECT_FALSE(QuitRule::shouldQuit({.isProcessing = true}));
}

struct PlaceCase {
    const char* name;
    QRect saved;
    QRect shown;
};

class WindowPlaces : public testing::TestWithParam<PlaceCase> {};

TEST_P(WindowPlaces, can_be_got_hold_of) {
    const std::vector<QRect> screens{{0, 0, 1920, 1080}, {1920, 0, 1280, 1024}};
    EXPECT_EQ(WindowPlace::fit(GetParam().saved, screens), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(
    Screens, WindowPlaces,
    testing::Values(PlaceCase{"as_it_was", {100, 50, 1240, 800}, {100, 50, 1240, 800}},
                    PlaceCase{"on_the_second_screen", {2000, 50, 1000, 700}, {2000, 50, 1000, 700}},
                    PlaceCase{"half_outside", {-600, 100, 1240, 800}, {-600, 100, 1240, 800}},
                    PlaceCase{"screen_is_gone", {4000, 100, 1240, 800}, {340, 140, 1240, 800}},
                    PlaceCase{"title_above_the_screen", {100, -500, 1240, 800}, {340, 140, 1240, 800}},
                    PlaceCase{"larger_than_the_screen", {0, 0, 3000, 2000}, {0, 0, 1920, 1080}}),
    [](const auto& one) { return one.param.name; });

TEST(Sounds, are_short_and_neither_click_nor_clip) {
    for (const char* name : {"Tink", "Pop"}) {
        const std::vector<float> sound = Sounds::samples(name);
        ASSERT_FALSE(sound.empty()) << name;
        EXPECT_LT(sound.size(), 48'000U) << name;
        EXPECT_LT(std::abs(sound.front()), 0.01F) << name;
        EXPECT_LT(std::abs(sound.back()), 0.01F) << name;
        const auto [low, high] = std::ranges::minmax(sound);
        EXPECT_GT(high, 0.1F) << name;
        EXPECT_LT(std::max(high, -low), 0.5F) << name;
    }
    EXPECT_TRUE(Sounds::samples("Basso").empty());
}

} // namespace
} // namespace varnic
