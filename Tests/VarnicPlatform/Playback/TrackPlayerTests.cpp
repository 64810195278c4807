#include "VarnicPlatform/Playback/TrackPlayerTest.h"

#include <fstream>
#include <thread>

namespace varnic {
namespace {

TEST_F(TrackPlayerTest, play_twoTracks_areHeardTogetherAndInTime) {
    listen();
    const std::vector<float> rising = Tones::sweep();
    const std::vector<float> falling(rising.rbegin(), rising.rend());
    load({track("you.m4a", soundAt(1, rising, 10)), track("them.m4a", soundAt(1.5, falling, 10))});
    EXPECT_TRUE(player.available());
    EXPECT_FALSE(player.playing());
    EXPECT_EQ(player.duration(), 10);
    EXPECT_EQ(player.time(), 0);
    player.play();
    EXPECT_TRUE(player.playing());
    ASSERT_TRUE(comesToPlayPast(2));
    const double said = saidTime(1);
    ASSERT_TRUE(comesToRecord(said + 1.5));
    const double heard = heardTime(rising);
    EXPECT_NEAR(heardTime(falling) - heard, 0.5, 0.001);
    EXPECT_NEAR(heard, said, 0.06) << "the microphone is up to two buffers late";
}

TEST_F(TrackPlayerTest, play_twoTones_bothInFullAndNothingOnTheOtherSideOfARecording) {
    listen();
    load({toneTrack("you.m4a", 700, 60), toneTrack("them.m4a", 1900, 60)});
    player.play();
    EXPECT_TRUE(recorder.comesToHearInFull(Speaker::you, 700));
    EXPECT_TRUE(recorder.comesToHearInFull(Speaker::you, 1900));
    play(playerTone);
    ASSERT_TRUE(recorder.comesToHear(Speaker::them, playerTone));
    EXPECT_TRUE(recorder.comesToMiss(Speaker::them, 700));
    EXPECT_EQ(property("varnic.playback"), "True");
    EXPECT_EQ(property("application.id"), "app.brevin.varnic");
    EXPECT_EQ(property("media.role"), "") << "volume and device would be shared with other players";
}

TEST_F(TrackPlayerTest, seek_whilePlaying_theSoundOfThatPlaceFollows) {
    listen();
    const std::vector<float> rising = Tones::sweep();
    const std::vector<float> falling(rising.rbegin(), rising.rend());
    std::vector<float> samples = soundAt(0.5, rising, 60);
    std::ranges::copy(falling, samples.begin() + std::int64_t{30} * 48'000 + 24'000);
    load({track("you.m4a", samples)});
    player.play();
    ASSERT_TRUE(comesToPlayPast(1));
    const double before = saidTime(0.5);
    player.seek(12);
    player.seek(30);
    EXPECT_NEAR(player.time(), 30, 0.05);
    ASSERT_TRUE(comesToPlayPast(31));
    const double after = saidTime(30.5);
    ASSERT_TRUE(comesToRecord(after + 1.5));
    // How late the recording is falls out.
    EXPECT_NEAR(heardTime(falling) - heardTime(rising), after - before, 0.003);
}

TEST_F(TrackPlayerTest, seek_whilePlaying_oldSoundEndsAtOnce) {
    listen();
    std::vector<float> samples = Tones::sines({700}, 30).front();
    samples.resize(std::size_t{60} * 48'000);
    load({track("you.m4a", samples)});
    player.play();
    ASSERT_TRUE(isHeard(700));
    const double sought = recorder.now();
    player.seek(40);
    ASSERT_TRUE(comesToRecord(sought + 1));
    // Two buffers: the one that is being heard, and the recording's own.
    const std::vector<float> heard = recorder.track(Speaker::you);
    const auto later = std::span(heard).subspan(static_cast<std::size_t>((sought + 0.1) * 48'000), 38'400);
    EXPECT_LT(Tones::amplitude(later, 700), Tones::loudness / 100);
}

TEST_F(TrackPlayerTest, pause_andPlay_fallsSilentAndGoesOnThere) {
    listen();
    load({toneTrack("you.m4a", 700, 60)});
    player.seek(20);
    EXPECT_EQ(player.time(), 20);
    player.play();
    ASSERT_TRUE(isHeard(700));
    player.pause();
    const double paused = player.time();
    EXPECT_GT(paused, 20);
    EXPECT_FALSE(player.playing());
    EXPECT_TRUE(comesToSilence(700));
    EXPECT_EQ(player.time(), paused);
    EXPECT_TRUE(comes([&] { return property("node.name").empty(); })) << "no stream is left behind";
    player.play();
    EXPECT_GE(player.time(), paused);
    EXPECT_LT(player.time(), paused + 1);
    EXPECT_TRUE(isHeard(700));
    EXPECT_EQ(count(Event::ended), 0);
}

TEST_F(TrackPlayerTest, play_toTheEnd_tellsAndBeginsAnew) {
    listen();
    load({toneTrack("you.m4a", 700, 1), toneTrack("them.m4a", 1900, 2)});
    EXPECT_EQ(player.duration(), 2);
    for (const long turn : {1, 2}) {
        player.play();
        EXPECT_LT(player.time(), 1);
        ASSERT_TRUE(isHeard(1900));
        ASSERT_TRUE(comes([&] { return count(Event::ended) == turn; }));
        EXPECT_FALSE(player.playing());
        EXPECT_EQ(player.time(), 2);
    }
    EXPECT_TRUE(player.available());
    player.seek(5);
    EXPECT_EQ(player.time(), 2);
    player.seek(-1);
    EXPECT_EQ(player.time(), 0);
}

TEST_F(TrackPlayerTest, load_whatIsThere_decidesWhatCanBePlayed) {
    const auto broken = folder.path() / "broken.m4a";
    std::ofstream(broken) << "no sound";
    const auto good = toneTrack("you.m4a", 700, 3);
    const auto gone = folder.path() / "them.m4a";

    struct Case {
        std::vector<std::filesystem::path> tracks;
        double duration;
    };

    long loads = 0;
    for (const auto& [tracks, duration] :
         {Case{{good, gone}, 3}, {{broken, good}, 3}, {{broken, gone}, 0}, {{}, 0}, {{good}, 3}}) {
        player.load(tracks);
        ++loads;
        ASSERT_TRUE(comes([&] { return count(Event::loaded) == loads; }));
        EXPECT_EQ(player.available(), duration > 0);
        EXPECT_EQ(player.duration(), duration);
    }
    player.stop();
    EXPECT_FALSE(player.available());
    player.play();
    player.seek(1);
    EXPECT_FALSE(player.playing());
    EXPECT_EQ(player.time(), 0);
}

TEST_F(TrackPlayerTest, play_beforeItIsLoaded_playsThen) {
    listen();
    player.load({toneTrack("you.m4a", 700, 60)});
    player.seek(30);
    player.play();
    EXPECT_EQ(player.time(), 30);
    EXPECT_TRUE(isHeard(700));
    EXPECT_GT(player.time(), 30);
}

TEST_F(TrackPlayerTest, play_anotherDefaultOutput_isFollowed) {
    listen();
    run("add-sink second");
    load({toneTrack("you.m4a", 700, 60)});
    player.play();
    ASSERT_TRUE(isHeard(700));
    run("default-sink second");
    ASSERT_TRUE(comesToSilence(700));
    run("link second:monitor_FL test-mic:input_MONO");
    EXPECT_TRUE(isHeard(700));
    EXPECT_TRUE(player.playing());
}

TEST_F(TrackPlayerTest, operations_fromManyThreads_leaveItUsable) {
    listen();
    load({toneTrack("you.m4a", 700, 60), toneTrack("them.m4a", 1900, 60)});
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 3; ++thread) {
        threads.emplace_back([this, thread] {
            for (int turn = 0; turn < 200; ++turn) {
                player.seek((turn * 7 + thread) % 50);
                turn % 3 == thread ? player.pause() : player.play();
                EXPECT_GE(player.time(), 0);
                EXPECT_LE(player.time(), player.duration());
            }
        });
    }
    threads.clear();
    player.seek(10);
    player.play();
    EXPECT_TRUE(isHeard(700));
    EXPECT_TRUE(isHeard(1900));
    EXPECT_EQ(count(Event::failed), 0) << player.problem();
}

} // namespace
} // namespace varnic
