#include "Varnic/Recording/RecordingHealth.h"

#include <gtest/gtest.h>

namespace varnic {
namespace {

TEST(RecordingHealth, warning_severalTroubles_tellsTheWorst) {
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
        {{.sides = both, .silent = both}, "The microphone has gone silent."},
        {{.sides = both, .diskSpace = 500'000'000}, std::nullopt},
        {{.sides = both, .silent = both, .diskSpace = 499'999'999}, "The disk is almost full — 499 MB left."},
        {{.sides = both, .diskSpace = 99'999'999}, "The disk is almost full — 99 MB left.", true},
        {{.sides = both, .diskSpace = 200'000'000, .writeProblem = "No space."},
         "The sound isn’t being saved: No space."},
    };
    for (const Case& one : cases) {
        EXPECT_EQ(one.health.warning(), one.warning);
        EXPECT_EQ(one.health.mustStop(), one.mustStop);
    }
}

} // namespace
} // namespace varnic
