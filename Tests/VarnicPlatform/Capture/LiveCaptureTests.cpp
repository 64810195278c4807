#include "VarnicPlatform/Capture/LiveCaptureTest.h"

#include "VarnicCore/Audio/CaptureError.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>

namespace varnic {
namespace {

using testing::ElementsAre;

TEST_F(LiveCaptureTest, start_soundOnBothSides_eachSideHearsItsOwn) {
    startSystem();
    EXPECT_THAT(recorder.start(), ElementsAre(Speaker::you, Speaker::them));
    feedMicrophone();
    play();
    ASSERT_TRUE(bothSidesHear());
    EXPECT_LT(recorder.loudness(Speaker::you, playerTone), Tones::loudness / 100);
    EXPECT_LT(recorder.loudness(Speaker::them, micTone), Tones::loudness / 100);
    EXPECT_TRUE(recorder.comesToHearInFull(Speaker::you, micTone));
    EXPECT_TRUE(recorder.comesToHearInFull(Speaker::them, playerTone));
    EXPECT_THAT(recorder.capture.problems(), testing::IsEmpty());
}

TEST_F(LiveCaptureTest, start_soundHeardOnBothSidesAtOnce_isAligned) {
    startSystem();
    std::vector<float> sound(2 * 48'000);
    std::ranges::copy(Tones::sweep(), std::back_inserter(sound));
    sound.resize(4 * std::size_t{48'000});
    const auto file = folder.path() / "sweep.wav";
    Tones::write(file, {sound});
    recorder.start();
    // Sound from before the player counts too.
    ASSERT_TRUE(comes([&] { return recorder.track(Speaker::you).size() > 48'000; }));
    const double before = recorder.now();
    const std::string player = run("play " + file.string());
    run("link " + player + ":output_FL test-mic:input_MONO");
    ASSERT_TRUE(comes([&] { return recorder.now() > before + 4; }));
    recorder.capture.stop();
    const auto you = static_cast<double>(Tones::find(Tones::sweep(), recorder.track(Speaker::you))) / 48'000;
    const auto them = static_cast<double>(Tones::find(Tones::sweep(), recorder.track(Speaker::them))) / 48'000;
    EXPECT_GT(them, before + 1.9);
    EXPECT_LT(them, before + 4);
    EXPECT_NEAR(you, them, 0.1);
    RecordProperty("millisecondsLate", std::to_string((you - them) * 1000));
}

TEST_F(LiveCaptureTest, start_streams_sayWhoseTheyAreAndWhatFor) {
    startSystem();
    recorder.start();
    for (const std::string node : {"varnic-microphone", "varnic-programs"}) {
        EXPECT_EQ(run("property " + node + " application.name"), "Varnic");
        EXPECT_EQ(run("property " + node + " application.icon-name"), "app.brevin.varnic");
    }
    EXPECT_EQ(run("property varnic-microphone node.description"), "Varnic: your side of a call");
    EXPECT_EQ(run("property varnic-programs node.description"), "Varnic: the other side of a call");
}

TEST_F(LiveCaptureTest, start_ownPlayback_isLeftOut) {
    startSystem();
    recorder.start();
    play();
    run("play " + tone({900}) + " '' 'varnic.playback=true'");
    run("pretend " + std::to_string(::getpid()) + " " +
        std::filesystem::read_symlink("/proc/self/exe").filename().string());
    run("wait-until-playing " + run("play " + tone({700})));
    ASSERT_TRUE(recorder.comesToHear(Speaker::them, playerTone));
    ASSERT_TRUE(recorder.comesToMiss(Speaker::them, 700));
    EXPECT_TRUE(recorder.comesToMiss(Speaker::them, 900));
}

TEST_F(LiveCaptureTest, start_programSpeaksPulse_isHeard) {
    startSystem();
    recorder.start();
    run("play-pulse " + tone({playerTone}));
    EXPECT_TRUE(recorder.comesToHear(Speaker::them, playerTone));
}

TEST_F(LiveCaptureTest, start_playsAlready_isHeard) {
    startSystem();
    play();
    recorder.start();
    EXPECT_TRUE(recorder.comesToHear(Speaker::them, playerTone));
}

TEST_F(LiveCaptureTest, start_withoutSystem_givesYou) {
    startSystem();
    recorder.wanted.them = false;
    EXPECT_THAT(recorder.start(), ElementsAre(Speaker::you));
    play();
    feedMicrophone();
    EXPECT_TRUE(recorder.comesToHear(Speaker::you, micTone));
    EXPECT_TRUE(recorder.track(Speaker::them).empty());
}

TEST_F(LiveCaptureTest, start_neitherSide_throwsNothingToRecord) {
    startSystem();
    const int before = LiveCapture::startCount();
    recorder.wanted.you = false;
    recorder.wanted.them = false;
    EXPECT_THROW(
        try { recorder.start(); } catch (const CaptureError& error) {
            EXPECT_EQ(error, CaptureError::nothingToRecord());
            throw;
        },
        CaptureError);
    EXPECT_EQ(LiveCapture::startCount(), before + 1);
}

TEST_F(LiveCaptureTest, start_timeZeroIsYetToCome_deliversFromZero) {
    startSystem();
    recorder.hostStart += 2;
    recorder.start();
    feedMicrophone();
    EXPECT_TRUE(comes([&] { return recorder.track(Speaker::you).size() > 4800; }));
}

TEST_F(LiveCaptureTest, stop_twice_deliversNothingMore) {
    startSystem();
    recorder.capture.stop();
    recorder.start();
    ASSERT_TRUE(comes([&] { return !recorder.track(Speaker::you).empty(); }));
    recorder.capture.stop();
    const std::size_t length = recorder.track(Speaker::you).size();
    EXPECT_FALSE(recorder.capture.expects(Speaker::you));
    recorder.capture.stop();
    Recorder other;
    other.start();
    ASSERT_TRUE(comes([&] { return other.track(Speaker::you).size() > 9600; })) << "the microphone goes on";
    EXPECT_EQ(recorder.track(Speaker::you).size(), length);
}

TEST_F(LiveCaptureTest, expects_player_onlyWhileItPlays) {
    startSystem();
    EXPECT_FALSE(recorder.capture.expects(Speaker::you));
    recorder.start();
    EXPECT_TRUE(recorder.capture.expects(Speaker::you));
    EXPECT_FALSE(recorder.capture.expects(Speaker::them));
    const std::string player = play();
    EXPECT_TRUE(comes([&] { return recorder.capture.expects(Speaker::them); }));
    run("stop " + player);
    EXPECT_TRUE(comes([&] { return !recorder.capture.expects(Speaker::them); }));
}

TEST_F(LiveCaptureTest, start_twoPlayersOnTwoSinks_addUp) {
    startSystem();
    run("add-sink second");
    recorder.start();
    run("play " + tone({440}) + " test-sink");
    run("play " + tone({550}) + " second");
    ASSERT_TRUE(recorder.comesToHear(Speaker::them, 440));
    ASSERT_TRUE(recorder.comesToHear(Speaker::them, 550));
    EXPECT_TRUE(recorder.comesToHearInFull(Speaker::them, 440));
    EXPECT_TRUE(recorder.comesToHearInFull(Speaker::them, 550));
}

TEST_F(LiveCaptureTest, start_playerComesTenTimes_isHeardEachTime) {
    startSystem();
    recorder.start();
    const std::string file = tone({playerTone});
    for (int turn = 0; turn < 10; ++turn) {
        const std::string player = run("play " + file);
        ASSERT_TRUE(recorder.comesToHear(Speaker::them, playerTone)) << turn;
        run("stop " + player);
        ASSERT_TRUE(comes([&] { return !recorder.capture.expects(Speaker::them); }));
    }
}

struct Layout {
    const char* name;
    std::vector<double> channels;
    int rate;
};

void PrintTo(const Layout& layout, std::ostream* out) {
    *out << layout.name;
}

class LiveCaptureLayouts : public LiveCaptureTest, public testing::WithParamInterface<Layout> {};

TEST_P(LiveCaptureLayouts, start_player_everyChannelIsHeard) {
    startSystem();
    recorder.start();
    run("play " + tone(GetParam().channels, GetParam().rate));
    for (const double frequency : GetParam().channels) {
        EXPECT_TRUE(frequency == 0 || recorder.comesToHear(Speaker::them, frequency, Tones::loudness / 8)) << frequency;
    }
}

// The fourth of six is the bass, which no stereo sound keeps.
INSTANTIATE_TEST_SUITE_P(Players, LiveCaptureLayouts,
                         testing::Values(Layout{"mono", {300}, 48'000}, Layout{"stereo", {300, 500}, 44'100},
                                         Layout{"surround", {300, 500, 700, 0, 900, 1100}, 48'000}),
                         [](const auto& test) { return test.param.name; });

class LiveCaptureRates : public LiveCaptureTest, public testing::WithParamInterface<int> {};

TEST_P(LiveCaptureRates, start_graphRate_soundKeepsItsPitchAndPace) {
    startSystem({"--rate", std::to_string(GetParam())});
    recorder.start();
    feedMicrophone();
    play();
    ASSERT_TRUE(bothSidesHear());
    EXPECT_TRUE(recorder.comesToHearInFull(Speaker::them, playerTone, 0.02));
    const double before = recorder.now();
    ASSERT_TRUE(comes([&] { return recorder.now() > before + 1; }));
    EXPECT_GT(static_cast<double>(recorder.track(Speaker::them).size()) / 48'000, before);
    EXPECT_GT(static_cast<double>(recorder.track(Speaker::you).size()) / 48'000, before);
}

INSTANTIATE_TEST_SUITE_P(Graphs, LiveCaptureRates, testing::Values(16'000, 44'100, 96'000));

} // namespace
} // namespace varnic
