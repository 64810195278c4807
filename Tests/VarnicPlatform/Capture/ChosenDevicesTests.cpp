#include "VarnicPlatform/Capture/LiveCaptureTest.h"

namespace varnic {
namespace {

class ChosenDevicesTest : public LiveCaptureTest {
protected:
    static constexpr double otherTone = 600;
    const DeviceChoice second{.name = "second", .label = "Virtual second"};

    /// Says something else into each of two microphones.
    void speakIntoBoth() {
        feedMicrophone();
        run("feed " + tone({otherTone}) + " second");
    }
};

TEST_F(ChosenDevicesTest, microphone_isRecordedWhateverTheDefaultIs) {
    startSystem();
    run("add-source second");
    recorder.capture.choose({.microphone = second, .heard = {}});
    recorder.start();
    speakIntoBoth();
    EXPECT_TRUE(recorder.comesToHear(Speaker::you, otherTone));
    run("default-source second");
    run("default-source test-mic");
    speakIntoBoth(); // A player may fall silent while its microphone is left and taken again.
    EXPECT_TRUE(recorder.comesToHear(Speaker::you, otherTone));
    EXPECT_TRUE(recorder.comesToMiss(Speaker::you, micTone));
    EXPECT_EQ(recorder.capture.notice(), std::nullopt);
}

TEST_F(ChosenDevicesTest, microphone_volumeControlMovesTheStream_isFollowed) {
    startSystem();
    run("add-source second");
    run("add-source third");
    recorder.capture.choose({.microphone = second, .heard = {}});
    recorder.start();
    run("feed " + tone({otherTone}) + " third");
    run("move varnic-microphone third");
    EXPECT_TRUE(recorder.comesToHear(Speaker::you, otherTone));
}

TEST_F(ChosenDevicesTest, microphone_gone_theDefaultStandsInUntilItReturns) {
    startSystem();
    recorder.capture.choose({.microphone = second, .heard = {}});
    recorder.start();
    feedMicrophone();
    EXPECT_TRUE(recorder.comesToHear(Speaker::you, micTone));
    EXPECT_TRUE(comes([&] { return recorder.capture.notice().has_value(); }));
    EXPECT_EQ(recorder.capture.notice(), "“Virtual second” is gone — recording from “Virtual test-mic” instead.");
    run("add-source second");
    run("feed " + tone({otherTone}) + " second");
    EXPECT_TRUE(recorder.comesToHear(Speaker::you, otherTone));
    EXPECT_TRUE(comes([&] { return !recorder.capture.notice(); }));
    run("remove second");
    EXPECT_TRUE(recorder.comesToHear(Speaker::you, micTone));
}

TEST_F(ChosenDevicesTest, choose_whileItRuns_changesAtOnce) {
    startSystem();
    run("add-source second");
    recorder.start();
    speakIntoBoth();
    ASSERT_TRUE(recorder.comesToHear(Speaker::you, micTone));
    recorder.capture.choose({.microphone = second, .heard = {}});
    EXPECT_TRUE(recorder.comesToHear(Speaker::you, otherTone));
    EXPECT_TRUE(recorder.comesToMiss(Speaker::you, micTone));
    recorder.capture.choose({});
    EXPECT_TRUE(recorder.comesToHear(Speaker::you, micTone));
}

TEST_F(ChosenDevicesTest, output_onlyWhatItPlaysIsHeard) {
    startSystem();
    run("add-sink second");
    recorder.capture.choose({.microphone = {}, .heard = second});
    recorder.start();
    play();
    run("play " + tone({otherTone}) + " second");
    EXPECT_TRUE(recorder.comesToHear(Speaker::them, otherTone));
    EXPECT_TRUE(recorder.comesToMiss(Speaker::them, playerTone));
    EXPECT_TRUE(recorder.capture.expects(Speaker::them));
    recorder.capture.choose({});
    EXPECT_TRUE(recorder.comesToHear(Speaker::them, playerTone));
}

TEST_F(ChosenDevicesTest, output_gone_allIsHeardUntilItReturns) {
    startSystem();
    recorder.capture.choose({.microphone = {}, .heard = second});
    recorder.start();
    play();
    EXPECT_TRUE(recorder.comesToHear(Speaker::them, playerTone));
    EXPECT_TRUE(comes([&] { return recorder.capture.notice().has_value(); }));
    EXPECT_EQ(recorder.capture.notice(), "“Virtual second” is gone — recording all that programs play instead.");
    run("add-sink second");
    run("play " + tone({otherTone}) + " second");
    EXPECT_TRUE(recorder.comesToHear(Speaker::them, otherTone));
    EXPECT_TRUE(recorder.comesToMiss(Speaker::them, playerTone));
    EXPECT_TRUE(comes([&] { return !recorder.capture.notice(); }));
}

} // namespace
} // namespace varnic
