#include "VarnicPlatform/Speech/SpeechSegments.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace varnic {
namespace {

using VoiceActivity::Range;

/// A track of `seconds` at one level, with parts at other levels.
struct Part {
    Range range;
    float level;
};

TrackLevels trackOf(double seconds, float level, const std::vector<Part>& parts) {
    TrackLevels track;
    track.levels.assign(static_cast<std::size_t>(seconds * 50), level);
    for (const auto& [range, other] : parts) {
        for (auto index = static_cast<std::size_t>(range.start * 50); index < static_cast<std::size_t>(range.end * 50);
             ++index) {
            track.levels[index] = other;
        }
    }
    return track;
}

std::vector<SpeechSegment> planned(const std::vector<Range>& speech, const TrackLevels& track) {
    SegmentPlanner planner(track, {});
    std::vector<SpeechSegment> segments;
    const auto take = [&] {
        while (const auto segment = planner.next()) {
            segments.push_back(*segment);
        }
    };
    for (const Range& range : speech) {
        planner.add(range);
        take();
    }
    planner.finish();
    take();
    return segments;
}

std::vector<Range> speechOf(const std::vector<SpeechSegment>& segments) {
    std::vector<Range> speech;
    for (const SpeechSegment& segment : segments) {
        speech.push_back(segment.speech);
    }
    return speech;
}

struct Plan {
    std::string what;
    std::vector<Range> speech;
    std::vector<Range> segments;
};

TEST(SegmentPlanner, next_speech_isJoinedAndCut) {
    const TrackLevels track = trackOf(60, -20, {{{31, 31.2}, -60}, {{44, 44.2}, -50}});
    const std::vector<Plan> plans{
        {"nothing", {}, {}},
        {"a pause of a second joins", {{1, 2}, {3, 4}}, {{1, 4}}},
        {"a longer one does not", {{1, 2}, {3.1, 4}}, {{1, 2}, {3.1, 4}}},
        {"no longer than fifteen seconds", {{0, 8}, {8.5, 15}, {15.5, 17}}, {{0, 15}, {15.5, 17}}},
        {"a long monologue is cut where it is quietest", {{20, 50}}, {{20, 31.1}, {31.1, 44.1}, {44.1, 50}}},
        {"speech past the end of the track", {{58, 61}}, {{58, 60}}},
    };
    for (const auto& [what, speech, expected] : plans) {
        const std::vector<Range> segments = speechOf(planned(speech, track));
        ASSERT_EQ(segments.size(), expected.size()) << what;
        for (std::size_t index = 0; index < expected.size(); ++index) {
            EXPECT_NEAR(segments[index].start, expected[index].start, 0.06) << what;
            EXPECT_NEAR(segments[index].end, expected[index].end, 0.06) << what;
        }
    }
}

TEST(SegmentPlanner, next_context_isRealSoundThatNobodyElseHears) {
    const TrackLevels track = trackOf(30, -20, {});
    const auto segments = planned({{0.1, 10}, {10.2, 20}, {25, 29.9}}, track);
    ASSERT_EQ(segments.size(), 3U);
    EXPECT_NEAR(segments[0].audio.start, 0, 1e-9);
    EXPECT_NEAR(segments[0].audio.end, 10.1, 1e-9);
    EXPECT_NEAR(segments[1].audio.start, 10.1, 1e-9);
    EXPECT_NEAR(segments[1].audio.end, 20.3, 1e-9);
    EXPECT_NEAR(segments[2].audio.start, 24.7, 1e-9);
    EXPECT_NEAR(segments[2].audio.end, 30, 1e-9);
}

TEST(SegmentPlanner, next_longSilence_givesTheLastSpeechBeforeIt) {
    const TrackLevels track = trackOf(30, -20, {});
    SegmentPlanner planner(track, {});
    planner.add({1, 2});
    planner.advance(3);
    EXPECT_FALSE(planner.next()) << "speech that begins now is joined";
    planner.advance(3.1);
    const auto segment = planner.next();
    ASSERT_TRUE(segment);
    EXPECT_NEAR(segment->audio.end, 2.3, 1e-9);
    EXPECT_FALSE(planner.pending()) << "nothing of the track has to be kept";
}

TEST(SpeechSegments, audible_silenceAndNoise_areLeftOutWithAMargin) {
    const std::vector<Part> speech = {{{0.2, 1}, -30}, {{2, 3}, -40}, {{10, 11}, -30}};

    struct Case {
        TrackLevels track;
        std::vector<Range> parts;
    };

    const std::vector<Range> heard = {{0, 3.76}, {9.24, 11.76}};
    const std::vector<Case> cases = {
        {trackOf(20, -100, {speech[0], speech[1], speech[2], {{15, 16}, -62}}), heard},
        {trackOf(20, -65, speech), heard},
        {trackOf(20, -55, speech), heard},
        {trackOf(20, -35, speech), {{0, 20}}}, // the speech may be as quiet as the noise
    };
    for (const auto& [track, expected] : cases) {
        const std::vector<Range> parts = SpeechSegments::audible(track, -20);
        ASSERT_EQ(parts.size(), expected.size()) << track.levels.front();
        for (std::size_t index = 0; index < parts.size(); ++index) {
            EXPECT_NEAR(parts[index].start, expected[index].start, 1e-6) << track.levels.front();
            EXPECT_NEAR(parts[index].end, expected[index].end, 1e-6) << track.levels.front();
        }
    }
}

TEST(SpeechSegments, audible_faintVoiceOverNoise_isHeard) {
    const TrackLevels track = trackOf(20, -62, {{{0.2, 5}, -20}, {{6, 8}, -20}, {{12, 13}, -52}});
    const std::vector<Range> parts = SpeechSegments::audible(track, -20);
    ASSERT_EQ(parts.size(), 2U);
    EXPECT_NEAR(parts[1].start, 11.28, 1e-6);
    EXPECT_NEAR(parts[1].end, 13.72, 1e-6);
}

TEST(SpeechSegments, meanLevel_parts_isThatOfTheirPower) {
    const TrackLevels track = trackOf(10, -120, {{{1, 2}, -20}, {{5, 6}, -40}});
    EXPECT_NEAR(SpeechSegments::meanLevel({{1, 2}}, track), -20, 0.001);
    EXPECT_NEAR(SpeechSegments::meanLevel({{1, 2}, {5, 6}}, track), -22.967, 0.001);
    EXPECT_EQ(SpeechSegments::meanLevel({}, track), -120.0F);
}

TEST(SpeechSegments, levelInNoise_quietTracks_haveNone) {
    EXPECT_EQ(SpeechSegments::levelInNoise(trackOf(10, -42, {{{2, 5}, -38}})), -38.0F);
    EXPECT_EQ(SpeechSegments::levelInNoise(trackOf(10, -60, {{{2, 2.5}, -40}})), std::nullopt) << "a click or two";
    EXPECT_EQ(SpeechSegments::levelInNoise({}), std::nullopt);
}

TEST(SpeechSegments, voicedRuns_pauses_areSeenInQuietAndInNoise) {
    for (const float noise : {-90.0F, -40.0F}) {
        const TrackLevels track = trackOf(10, noise, {{{1, 2}, -25}, {{2.1, 3}, -22}, {{3.5, 5}, -24}});
        const std::vector<Range> runs = SpeechSegments::voicedRuns({1, 5.3}, track);
        ASSERT_EQ(runs.size(), 2U) << noise;
        EXPECT_NEAR(runs[0].end, 3, 0.021);
        EXPECT_NEAR(runs[1].start, 3.5, 0.021);
    }
}

struct Noise {
    std::string what;
    TrackLevels track;
    std::vector<Range> speech;
    float level;
};

TEST(SpeechSegments, pauseLevel_lastMinute_isThatOfItsPauses) {
    const TrackLevels room = trackOf(70, -45, {{{5, 15}, -20}, {{16, 40}, -22}});
    for (const auto& [what, track, speech, level] :
         {Noise{"a room", room, {{5, 15}, {16, 40}}, -45}, Noise{"clicks", trackOf(70, -50, {{{20, 24}, -5}}), {}, -50},
          Noise{"voices all over", room, {{0.3, 69.5}}, -120},
          Noise{"a muted side", trackOf(70, -120, {{{20, 30}, -40}}), {{22, 28}}, -40},
          Noise{"music", trackOf(70, -30, {{{0, 25}, -36}}), {}, -120},
          Noise{"a minute ago", trackOf(70, -55, {{{0, 9}, -30}}), {}, -55},
          Noise{"speech that is still to come", trackOf(90, -48, {{{69, 90}, -20}}), {{69.2, 80}}, -48}}) {
        EXPECT_EQ(SpeechSegments::pauseLevel(speech, 70, track), level) << what;
    }
    EXPECT_EQ(SpeechSegments::pauseLevel({}, 70, {}), -120);
}

} // namespace
} // namespace varnic
