#include "Varnic/Recording/RecordingHealth.h"

#include <gtest/gtest.h>

namespace varnic {
namespace {

TEST(RecordingHealth, warning_severalTroubles_tellsTheWorst) {
    constexpr const char* lowDisk = "The disk is almost full — less than ten minutes of recording fit.";
    const std::vector<Speaker> both{Speaker::you, Speaker::them};

    struct Case {
        RecordingHealth health;
        std::optional<std::string> warning;
        bool mustStop = false;
    };

    const std::vector<Case> cases{
        {{.sides = both}, std::nullopt},
        {{.sides = {Speaker::you}}, "Recording your side only — their side needs Screen Recording."},
        {{.sides = {Speaker::them}}, "Recording their side only — the microphone is off."},
        {{.sides = both, .silent = {Speaker::them}}, "The Mac’s sound has gone silent."},
        {{.sides = {Speaker::you}, .notice = "Another one."}, "Another one."},
        {{.sides = both, .silent = both, .notice = "Another one."}, "Your microphone is silent — is it muted?"},
        {{.sides = both, .diskSpace = 30'800'000}, std::nullopt},
        {{.sides = both, .silent = both, .diskSpace = 30'799'999}, lowDisk},
        {{.sides = both, .diskSpace = 20'000'000}, lowDisk},
        {{.sides = both, .diskSpace = 19'999'999}, lowDisk, true},
        {{.sides = both, .diskSpace = 25'000'000, .writeProblem = "No space."},
         "The sound isn’t being saved: No space."},
    };
    for (const Case& one : cases) {
        EXPECT_EQ(one.health.warning(), one.warning);
        EXPECT_EQ(one.health.mustStop(), one.mustStop);
    }
}

TEST(RecordingHealth, refusal_noRoomForAnHour_tellsTheMinutes) {
    struct Case {
        std::optional<std::uintmax_t> space;
        std::optional<std::string> fits;
    };

    const std::vector<Case> cases{{std::nullopt, std::nullopt},
                                  {84'800'000, std::nullopt},
                                  {84'799'999, "only 59 minutes of recording fit"},
                                  {22'160'000, "only 2 minutes of recording fit"},
                                  {21'080'000, "only 1 minute of recording fits"},
                                  {21'079'999, "not even a minute of recording fits"},
                                  {0, "not even a minute of recording fits"}};
    for (const Case& one : cases) {
        const auto refusal = RecordingHealth::refusal(one.space);
        ASSERT_EQ(refusal.has_value(), one.fits.has_value());
        if (refusal) {
            EXPECT_EQ(*refusal, "The disk is almost full — " + *one.fits + ". Make room for an hour first.");
        }
    }
}

} // namespace
} // namespace varnic
