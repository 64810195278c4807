#include "VarnicPlatform/Playback/TrackPlayerTest.h"

#include <numbers>
#include <utility>
#include <vector>

namespace varnic {
namespace {

constexpr double voice = 700;
constexpr double otherVoice = 1900;

class TrackPlayerSpeedTest : public TrackPlayerTest {
protected:
    /// How loud a tone is in the hundredth of a second from each on.
    [[nodiscard]] static std::vector<double> course(std::span<const float> samples, double frequency) {
        std::vector<double> loudness;
        for (; samples.size() >= 480; samples = samples.subspan(480)) {
            loudness.push_back(Tones::amplitude(samples.first(480), frequency));
        }
        return loudness;
    }

    /// How far a sample is from where the two before it lead in a sine of that frequency, at most.
    [[nodiscard]] static double worstBreak(std::span<const float> samples, double frequency) {
        const double bend = 2 * std::cos(2 * std::numbers::pi * frequency / 48'000);
        double worst = 0;
        for (std::size_t i = 2; i < samples.size(); ++i) {
            const double led = bend * static_cast<double>(samples[i - 1]) - static_cast<double>(samples[i - 2]);
            worst = std::max(worst, std::abs(static_cast<double>(samples[i]) - led));
        }
        return worst;
    }
};

TEST_F(TrackPlayerSpeedTest, play_faster_takesLessTimeAndTimesAreThoseOfTheCall) {
    listen();
    std::vector<float> samples = Tones::sines(std::vector{voice}, 20).front();
    std::ranges::copy(Tones::sines(std::vector{otherVoice}, 3).front(), samples.begin() + std::int64_t{3} * 48'000);
    load({track("you.m4a", samples)});
    player.setSpeed(1.5);
    EXPECT_EQ(player.speed(), 1.5);
    player.play();
    ASSERT_TRUE(comesToPlayPast(7.5));
    const double said = recorder.now() - (player.time() - 3) / 1.5;
    const std::vector<double> heard = course(recorder.track(Speaker::you), otherVoice);
    const auto isLoud = [](double loudness) { return loudness > Tones::loudness / 2; };
    const auto length = static_cast<double>(std::ranges::count_if(heard, isLoud)) / 100;
    const auto first = static_cast<double>(std::ranges::find_if(heard, isLoud) - heard.begin()) / 100;
    EXPECT_NEAR(length, 2, 0.05);
    EXPECT_NEAR(first, said, 0.15) << "the microphone is up to two buffers late, and a joint has no exact place";
    EXPECT_EQ(player.duration(), 20);
}

TEST_F(TrackPlayerSpeedTest, setSpeed_whilePlaying_isHeardWithoutGapOrClick) {
    listen();
    load({toneTrack("you.m4a", voice, 60)});
    player.play();
    double least = 0;
    double worst = 1;
    const auto isClean = [&] { return least > Tones::loudness * 0.8 && worst < Tones::loudness / 10; };
    // A busy machine that stops the sound system for a moment spoils a round, but not all of them.
    for (int round = 0; round < 3 && !isClean(); ++round) {
        ASSERT_TRUE(recorder.comesToHearInFull(Speaker::you, voice));
        const double begun = recorder.now();
        player.seek(1);
        for (const double speed : {1.5, 0.75, 2.0, 1.0}) {
            player.setSpeed(speed);
            ASSERT_TRUE(comesToPlayPast(player.time() + 2));
        }
        ASSERT_TRUE(comesToRecord(begun + 6));
        const std::vector<float> all = recorder.track(Speaker::you);
        // The seek itself is heard.
        const auto heard = std::span(all).subspan(static_cast<std::size_t>((begun + 0.5) * 48'000));
        least = std::ranges::min(course(heard, voice));
        worst = worstBreak(heard, voice);
    }
    EXPECT_GT(least, Tones::loudness * 0.8) << "a gap";
    EXPECT_LT(worst, Tones::loudness / 10) << "a click";
}

TEST_F(TrackPlayerSpeedTest, play_toTheEndAtASpeed_endsThere) {
    listen();
    load({toneTrack("you.m4a", voice, 3)});
    for (const double speed : {2.0, 0.75}) {
        player.setSpeed(speed);
        player.seek(1.5);
        player.play();
        ASSERT_TRUE(comes([&] {
            EXPECT_LE(player.time(), 3);
            return !player.playing();
        }));
        EXPECT_EQ(player.time(), 3);
    }
    EXPECT_EQ(count(Event::ended), 2);
}

TEST_F(TrackPlayerSpeedTest, setSpeed_outOfRange_isTheNearest) {
    for (const auto& [asked, taken] : std::vector<std::pair<double, double>>{{0, 0.5}, {9, 2}, {0.75, 0.75}}) {
        player.setSpeed(asked);
        EXPECT_EQ(player.speed(), taken);
    }
    player.load({toneTrack("you.m4a", voice, 1)});
    EXPECT_EQ(player.speed(), 0.75) << "it stays for another call";
}

} // namespace
} // namespace varnic
