#include "VarnicPlatform/Capture/LiveCaptureTest.h"

#include "VarnicCore/Audio/CaptureError.h"

#include <cstdlib>
#include <span>
#include <vector>

namespace varnic {
namespace {

using testing::ElementsAre;

/// What a start that fails says.
std::string failure(Recorder& recorder) {
    try {
        recorder.start();
    } catch (const CaptureError& error) {
        return error.what();
    }
    return "";
}

constexpr const char* connectionLost = "The connection to the sound system was lost.";

TEST_F(LiveCaptureTest, start_noServer_saysSoOnce) {
    setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
    EXPECT_EQ(failure(recorder), "The microphone couldn’t start: The sound system, PipeWire, isn’t running.");
}

TEST_F(LiveCaptureTest, start_serverWithoutDevices_saysSo) {
    startSystem({"--no-nodes", "--no-pulse"});
    EXPECT_EQ(failure(recorder),
              "The microphone couldn’t start: no input device The Mac’s sound couldn’t be captured: PipeWire is "
              "running, but has no sound devices. Does PulseAudio run the sound?");
}

TEST_F(LiveCaptureTest, start_noSource_recordsTheirSideOnly) {
    startSystem({"--no-source"});
    EXPECT_THAT(recorder.start(), ElementsAre(Speaker::them));
    EXPECT_THAT(recorder.capture.problems(), ElementsAre("The microphone couldn’t start: no input device"));
    play();
    EXPECT_TRUE(recorder.comesToHear(Speaker::them, playerTone));
    EXPECT_TRUE(recorder.track(Speaker::you).empty());
    run("add-source late");
    run("feed " + tone({micTone}) + " late");
    EXPECT_TRUE(recorder.comesToHear(Speaker::you, micTone)) << "a microphone that is plugged in late is brought in";
}

TEST_F(LiveCaptureTest, start_noSourceAndMicrophoneOnly_throws) {
    startSystem({"--no-source"});
    recorder.wanted.them = false;
    EXPECT_EQ(failure(recorder), "The microphone couldn’t start: no input device");
}

TEST_F(LiveCaptureTest, start_noSink_hearsWhatPlaysOnceThereIsOne) {
    startSystem({"--no-sink", "--no-pulse"});
    EXPECT_THAT(recorder.start(), ElementsAre(Speaker::you, Speaker::them));
    run("add-sink late");
    play();
    EXPECT_TRUE(recorder.comesToHear(Speaker::them, playerTone));
}

TEST_F(LiveCaptureTest, start_noSessionManager_saysThatTheMicrophoneIsSilent) {
    startSystem({"--no-session"});
    EXPECT_THAT(recorder.start(), ElementsAre(Speaker::them));
    EXPECT_THAT(recorder.capture.problems(),
                ElementsAre("The microphone couldn’t start: no sound comes from “Virtual test-mic”"));
}

TEST_F(LiveCaptureTest, start_onlyMicrophoneGivesNothing_theirSideIsHeardMeanwhileAndYoursOnceItDoes) {
    startSystem({"--no-source"});
    run("add-dead-source headset");
    play();
    EXPECT_THAT(recorder.start(), ElementsAre(Speaker::them));
    EXPECT_THAT(recorder.capture.awaited(), ElementsAre(Speaker::you));
    const auto secondBefore = static_cast<std::size_t>((recorder.now() - 1) * 48'000);
    ASSERT_TRUE(comes([&] { return recorder.track(Speaker::them).size() > secondBefore; }));
    const std::vector<float> meanwhile = recorder.track(Speaker::them);
    EXPECT_GT(Tones::amplitude(std::span(meanwhile).first(secondBefore).last(12'000), playerTone), Tones::loudness / 4);
    EXPECT_THAT(recorder.capture.problems(),
                ElementsAre("The microphone couldn’t start: no sound comes from “headset”"));
    run("revive headset");
    run("feed " + tone({micTone}) + " headset-in");
    EXPECT_TRUE(recorder.comesToHear(Speaker::you, micTone));
    EXPECT_TRUE(recorder.capture.expects(Speaker::you));
}

TEST_F(LiveCaptureTest, chosenMicrophoneGivesNothing_anotherStandsInUntilItDoes) {
    startSystem();
    run("add-dead-source headset");
    run("default-source headset");
    feedMicrophone();
    EXPECT_THAT(recorder.start(), ElementsAre(Speaker::you, Speaker::them));
    EXPECT_TRUE(recorder.comesToHear(Speaker::you, micTone));
    constexpr const char* standsIn = "“headset” delivers no sound — recording from “Virtual test-mic” instead.";
    EXPECT_TRUE(comes([&] { return recorder.capture.notice() == standsIn; }));
    run("revive headset");
    run("feed " + tone({600}) + " headset-in");
    EXPECT_TRUE(recorder.comesToHear(Speaker::you, 600));
    EXPECT_TRUE(comes([&] { return !recorder.capture.notice(); }));
    run("hold headset");
    EXPECT_TRUE(comes([&] { return recorder.capture.notice() == standsIn; }));
    feedMicrophone(); // anew: a program that stands still may hold up another's player
    EXPECT_TRUE(recorder.comesToHear(Speaker::you, micTone));
}

class LiveCaptureKills : public LiveCaptureTest, public testing::WithParamInterface<const char*> {
protected:
    [[nodiscard]] static std::string how() { return GetParam(); }
};

TEST_P(LiveCaptureKills, serverEnds_startedAgain_bothSidesReturn) {
    startSystem();
    recorder.start();
    feedMicrophone();
    play();
    ASSERT_TRUE(bothSidesHear());
    run("kill pipewire " + how());
    ASSERT_TRUE(comesToReport(connectionLost));
    EXPECT_TRUE(recorder.capture.expects(Speaker::you));
    EXPECT_TRUE(recorder.capture.expects(Speaker::them));
    // The session manager loses its connection too.
    run("kill wireplumber KILL");
    run("start pipewire");
    run("start wireplumber");
    feedMicrophone();
    play();
    EXPECT_TRUE(bothSidesHear());
}

TEST_P(LiveCaptureKills, sessionManagerEnds_startedAgain_bothSidesReturn) {
    startSystem();
    recorder.start();
    const std::string feed = feedMicrophone();
    const std::string player = play();
    ASSERT_TRUE(bothSidesHear());
    run("kill wireplumber " + how());
    ASSERT_TRUE(comesToReport("The microphone stopped delivering sound."));
    EXPECT_TRUE(recorder.capture.expects(Speaker::you));
    run("start wireplumber");
    run("stop " + feed);
    run("stop " + player);
    feedMicrophone();
    play();
    EXPECT_TRUE(bothSidesHear());
}

INSTANTIATE_TEST_SUITE_P(Signals, LiveCaptureKills, testing::Values("TERM", "KILL"),
                         [](const auto& test) { return test.param; });

TEST_F(LiveCaptureTest, defaultSourceChanges_isFollowed) {
    startSystem();
    run("add-source second");
    recorder.start();
    feedMicrophone();
    run("feed " + tone({600}) + " second");
    ASSERT_TRUE(recorder.comesToHear(Speaker::you, micTone));
    run("default-source second");
    EXPECT_TRUE(recorder.comesToHear(Speaker::you, 600));
    EXPECT_TRUE(recorder.comesToMiss(Speaker::you, micTone));
    run("default-source test-mic");
    EXPECT_TRUE(recorder.comesToHear(Speaker::you, micTone));
}

TEST_F(LiveCaptureTest, defaultSinkChanges_isFollowed) {
    startSystem();
    run("add-sink second");
    recorder.start();
    play();
    ASSERT_TRUE(recorder.comesToHear(Speaker::them, playerTone));
    run("default-sink second");
    EXPECT_TRUE(recorder.comesToHear(Speaker::them, playerTone));
}

TEST_F(LiveCaptureTest, sinkVanishes_playersMoveOn_isFollowed) {
    startSystem();
    run("add-sink second");
    run("default-sink second");
    recorder.start();
    play();
    ASSERT_TRUE(recorder.comesToHear(Speaker::them, playerTone));
    run("remove second");
    EXPECT_TRUE(recorder.comesToHear(Speaker::them, playerTone));
}

TEST_F(LiveCaptureTest, microphoneVanishes_anotherStandsInUntilItReturns) {
    startSystem();
    run("add-source second");
    recorder.start();
    feedMicrophone();
    ASSERT_TRUE(recorder.comesToHear(Speaker::you, micTone));
    run("remove test-mic");
    EXPECT_TRUE(comes([&] {
        return recorder.capture.notice() == "“Virtual test-mic” is gone — recording from “Virtual second” instead.";
    }));
    // Not before: PipeWire 0.3.65 now and then leaves a player asleep whose microphone nobody has listened to.
    run("feed " + tone({600}) + " second");
    EXPECT_TRUE(recorder.comesToHear(Speaker::you, 600));
    run("add-source test-mic");
    feedMicrophone();
    EXPECT_TRUE(recorder.comesToHear(Speaker::you, micTone));
    EXPECT_TRUE(comes([&] { return !recorder.capture.notice(); }));
}

TEST_F(LiveCaptureTest, streamMovedByAVolumeControl_isFollowed) {
    startSystem();
    run("add-source second");
    recorder.start();
    feedMicrophone();
    run("feed " + tone({600}) + " second");
    ASSERT_TRUE(recorder.comesToHear(Speaker::you, micTone));
    run("move varnic-microphone second");
    EXPECT_TRUE(recorder.comesToHear(Speaker::you, 600));
    EXPECT_TRUE(recorder.comesToMiss(Speaker::you, micTone));
}

TEST_F(LiveCaptureTest, microphoneVanishes_neverTheMonitorInstead_returns) {
    startSystem();
    recorder.start();
    feedMicrophone();
    play();
    ASSERT_TRUE(bothSidesHear());
    run("remove test-mic");
    ASSERT_TRUE(comesToReport("The microphone is gone."));
    EXPECT_EQ(recorder.capture.notice(), "The microphone is gone.");
    EXPECT_TRUE(recorder.capture.expects(Speaker::you));
    ASSERT_TRUE(recorder.comesToHear(Speaker::them, playerTone));
    EXPECT_LT(recorder.loudness(Speaker::you, playerTone), Tones::loudness / 50);
    run("add-source plugged");
    run("feed " + tone({600}) + " plugged");
    EXPECT_TRUE(recorder.comesToHear(Speaker::you, 600));
}

} // namespace
} // namespace varnic
