#include "VarnicPlatform/Playback/TrackPlayerTest.h"

namespace varnic {
namespace {

class TrackPlayerFaultTest : public TrackPlayerTest {
protected:
    /// Whether playing fails with the sentence.
    [[nodiscard]] bool failsWith(const std::string& sentence, long failures = 1) const {
        const bool failed = comes([&] { return count(Event::failed) == failures; });
        EXPECT_EQ(player.problem(), sentence);
        EXPECT_FALSE(player.playing());
        EXPECT_TRUE(player.available());
        return failed;
    }

    /// After a failure at some place, it plays on from there once the sound system is back.
    void expectPlaysOnFrom(double place) {
        EXPECT_NEAR(player.time(), place, 0.5);
        run("link test-sink:monitor_FL test-mic:input_MONO");
        player.play();
        EXPECT_EQ(player.problem(), "");
        EXPECT_TRUE(isHeard(700));
        EXPECT_GT(player.time(), place - 0.5);
    }
};

TEST_F(TrackPlayerFaultTest, play_serverKilled_saysSoAndPlaysOnWithTheNext) {
    listen();
    load({toneTrack("you.m4a", 700, 60)});
    player.seek(20);
    player.play();
    ASSERT_TRUE(isHeard(700));
    const double place = player.time();
    run("kill pipewire KILL");
    ASSERT_TRUE(failsWith("The sound output was lost."));
    player.play();
    ASSERT_TRUE(failsWith("The sound system, PipeWire, isn’t running.", 2));
    run("kill wireplumber KILL");
    run("start pipewire");
    run("start wireplumber");
    expectPlaysOnFrom(place);
}

TEST_F(TrackPlayerFaultTest, play_sessionManagerKilled_saysSo) {
    listen();
    load({toneTrack("you.m4a", 700, 60)});
    player.play();
    ASSERT_TRUE(isHeard(700));
    run("kill wireplumber KILL");
    EXPECT_TRUE(failsWith("The sound output was lost."));
}

TEST_F(TrackPlayerFaultTest, play_onlyOutputUnplugged_saysSo) {
    listen();
    load({toneTrack("you.m4a", 700, 60)});
    player.play();
    ASSERT_TRUE(isHeard(700));
    run("remove test-sink");
    EXPECT_TRUE(failsWith("The sound output was lost."));
    player.play();
    EXPECT_TRUE(failsWith("There is no speaker or headphones to play the call on.", 2));
}

TEST_F(TrackPlayerFaultTest, play_nothingToPlayOn_saysWhat) {
    startSystem({"--no-nodes", "--no-pulse"});
    load({toneTrack("you.m4a", 700, 2)});
    player.play();
    EXPECT_TRUE(failsWith("PipeWire is running, but has no sound devices. Does PulseAudio run the sound?"));
    EXPECT_EQ(player.time(), 0);
}

TEST_F(TrackPlayerFaultTest, pause_whileOpeningFails_isNoFailure) {
    load({toneTrack("you.m4a", 700, 2)});
    startSystem({"--no-sink"});
    player.play();
    player.pause();
    player.play();
    EXPECT_TRUE(comes([&] { return !player.playing(); }));
    EXPECT_EQ(player.problem(), "There is no speaker or headphones to play the call on.");
}

TEST_F(TrackPlayerFaultTest, play_filesGoneOrCut_endsAsIfTheyWereThere) {
    listen();
    const auto you = toneTrack("you.m4a", 700, 4);
    const auto them = toneTrack("them.m4a", 1900, 4);
    load({you, them});
    std::filesystem::remove(you);
    std::filesystem::resize_file(them, 2'000);
    player.play();
    EXPECT_TRUE(isHeard(700));
    ASSERT_TRUE(comes([&] { return count(Event::ended) == 1; }));
    EXPECT_EQ(player.time(), 4);
    EXPECT_EQ(count(Event::failed), 0);
}

TEST_F(TrackPlayerFaultTest, destroy_whilePlaying_endsTheSound) {
    listen();
    {
        TrackPlayer other([](Event) {});
        other.load({toneTrack("you.m4a", 700, 60)});
        other.play();
        ASSERT_TRUE(isHeard(700));
    }
    EXPECT_TRUE(comesToSilence(700));
}

} // namespace
} // namespace varnic
