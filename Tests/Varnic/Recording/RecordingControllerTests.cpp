#include "Varnic/Recording/RecordingController.h"

#include "Varnic/Background.h"
#include "Varnic/EventLoop.h"
#include "Varnic/HandCapture.h"
#include "Varnic/Recording/RecordingHealth.h"
#include "VarnicCore/Audio/AudioFiles.h"
#include "VarnicCore/FileSizeLimit.h"
#include "VarnicCore/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <regex>
#include <semaphore>

namespace varnic {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// An engine whose results the test gives.
class ScriptedEngine {
public:
    RecordingController::MakeRecognizer factory() {
        return [this](Speaker speaker, const std::string&, const LiveRecognizer::Lines& onPartial,
                      const LiveRecognizer::Lines& onCommit) {
            partial[speaker] = onPartial;
            commit[speaker] = onCommit;
            return std::make_unique<LiveRecognizer>(
                speaker, [this](const SpeechRequest::OnResult&) { return std::make_unique<Deaf>(isDone); }, onPartial,
                onCommit);
        };
    }

    std::map<Speaker, LiveRecognizer::Lines> partial;
    std::map<Speaker, LiveRecognizer::Lines> commit;
    /// Whether the requests have heard all that came.
    bool isDone = true;

private:
    class Deaf final : public SpeechRequest {
    public:
        explicit Deaf(const bool& isDone) : isDone_(isDone) {}

    private:
        void append(const PcmBuffer& /*buffer*/) override {}

        void skip(double /*seconds*/) override {}

        void endAudio() override {}

        [[nodiscard]] bool isDone() const override { return isDone_; }

        void cancel() override {}

        const bool& isDone_;
    };
};

class RecordingControllerTests : public testing::Test {
protected:
    void start(const std::shared_ptr<CaptureSource>& capture, const std::optional<std::string>& locale = std::nullopt) {
        // QCoro::waitFor does not come back from a coroutine that throws.
        std::exception_ptr failure;
        const auto run = [&]() -> QCoro::Task<> {
            try {
                auto task = controller.start(Uuid::random(), folder, capture, locale, "Call");
                co_await task;
            } catch (...) {
                failure = std::current_exception();
            }
        };
        QCoro::waitFor(run());
        if (failure) {
            std::rethrow_exception(failure);
        }
    }

    std::optional<RecordingResult> stop() { return QCoro::waitFor(controller.stop()); }

    static Segment line(Speaker speaker, double start, std::string text) {
        return Segment(speaker, start, start + 1, std::move(text));
    }

    TemporaryFolder temporary;
    fs::path folder = temporary.path() / "audio" / "call";
    std::shared_ptr<HandCapture> both = std::make_shared<HandCapture>(std::vector{Speaker::you, Speaker::them});
    RecordingController controller;
};

TEST_F(RecordingControllerTests, stop_oneSideSpeaksInTheMiddle_bothTracksAreAlignedAndOfOneLength) {
    start(both);
    EXPECT_TRUE(fs::exists(folder / "recording.json"));
    both->play(Speaker::you, 0, 10);
    both->play(Speaker::them, 4, 2);
    const auto result = stop();

    ASSERT_TRUE(result);
    EXPECT_EQ(controller.state(), SessionState(Session::Idle()));
    EXPECT_TRUE(both->isStopped);
    EXPECT_NEAR(result->duration, 10, 0.001);
    EXPECT_NEAR(AudioFiles::duration(*result->tracks.you), 10, 0.001);
    EXPECT_NEAR(AudioFiles::duration(*result->tracks.them), 10, 0.001);
    const std::vector<float> levels = AudioFiles::frameLevels(*result->tracks.them, 0.5);
    for (std::size_t i = 0; i < levels.size(); ++i) {
        EXPECT_EQ(levels[i] > -20, i >= 8 && i < 12) << i;
    }
    EXPECT_TRUE(fs::exists(folder / "recording.json")) << "until the call is filed";
}

TEST_F(RecordingControllerTests, deliver_oneSideOnly_theOthersTrackGrowsWithIt) {
    start(both);
    for (int second = 0; second < 60; ++second) {
        both->play(Speaker::you, second, 1);
    }
    EXPECT_TRUE(waitUntil([&] { return AudioFiles::duration(folder / "them.m4a") > 45; }));
    both->play(Speaker::them, 55, 1);
    const auto result = stop();
    ASSERT_TRUE(result);
    const std::vector<float> levels = AudioFiles::frameLevels(*result->tracks.them, 0.5);
    EXPECT_EQ(levels.size(), 120U);
    for (std::size_t i = 0; i < levels.size(); ++i) {
        EXPECT_EQ(levels[i] > -20, i >= 110 && i < 112) << i;
    }
}

TEST_F(RecordingControllerTests, start_microphoneOnly_recordsOneSideAndSaysSo) {
    const auto capture = std::make_shared<HandCapture>(std::vector{Speaker::you});
    start(capture);
    EXPECT_EQ(controller.warning(), "Recording your side only — their side needs Screen Recording.");
    capture->play(Speaker::you, 0, 1);
    ASSERT_TRUE(waitUntil([&] { return !controller.samples().empty() && controller.samples().back().you > 0.5F; }));
    EXPECT_EQ(controller.samples().back().them, 0);
    EXPECT_FALSE(fs::exists(folder / "them.m4a")) << "a recording that is killed has one side too";
    const auto result = stop();

    ASSERT_TRUE(result);
    EXPECT_THAT(result->tracks.speakers(), ElementsAre(Speaker::you));
    EXPECT_FALSE(fs::exists(folder / "them.m4a"));
}

TEST_F(RecordingControllerTests, start_whatCannotBeOpened_failsAndCanBeTriedAgain) {
    const auto capture = std::make_shared<HandCapture>(std::vector<Speaker>{});
    capture->failure = CaptureError::micFailed("no input device");
    EXPECT_THROW(start(capture), CaptureError);
    EXPECT_EQ(controller.state(), SessionState(Session::Failed{"The microphone couldn’t start: no input device"}));
    EXPECT_FALSE(fs::exists(folder / "recording.json"));

    folder = "/proc/none";
    EXPECT_THROW(start(std::make_shared<HandCapture>(std::vector{Speaker::you})), std::exception);

    folder = temporary.path() / "again";
    start(std::make_shared<HandCapture>(std::vector{Speaker::you}));
    EXPECT_TRUE(isRecording(controller.state()));
}

TEST_F(RecordingControllerTests, start_whileRecording_doesNothing) {
    start(std::make_shared<HandCapture>(std::vector{Speaker::you, Speaker::them}));
    const Uuid id = controller.noteID();
    const auto second = std::make_shared<HandCapture>(std::vector{Speaker::you});
    second->failure = CaptureError::nothingToRecord();
    start(second);
    EXPECT_EQ(controller.noteID(), id);
    EXPECT_THAT(controller.sides(), SizeIs(2));
}

TEST_F(RecordingControllerTests, discard_leavesNothing) {
    start(both);
    both->play(Speaker::you, 0, 1);
    controller.discard();
    EXPECT_EQ(controller.state(), SessionState(Session::Idle()));
    EXPECT_FALSE(fs::exists(folder));

    auto starting = controller.start(Uuid::random(), folder, both, std::nullopt, "Call");
    both->isStopped = false;
    controller.discard();
    QCoro::waitFor(starting);
    EXPECT_TRUE(both->isStopped);
    EXPECT_EQ(controller.state(), SessionState(Session::Idle()));
    EXPECT_FALSE(fs::exists(folder));

    // While the speech models are being opened, too, which does not hold the window.
    std::binary_semaphore mayOpen(0);
    controller.makeRecognizer = [&](Speaker speaker, const std::string&, const auto&, const auto&) {
        if (speaker == Speaker::you) {
            mayOpen.acquire();
        }
        return nullptr;
    };
    starting = controller.start(Uuid::random(), folder, both, "en-US", "Call");
    both->takesSound = false;
    controller.discard();
    mayOpen.release();
    QCoro::waitFor(starting);
    EXPECT_FALSE(both->takesSound);
    EXPECT_EQ(controller.state(), SessionState(Session::Idle()));
    EXPECT_FALSE(fs::exists(folder));
}

TEST_F(RecordingControllerTests, destroyed_whileItStartsOrStops_endsTheCaptureAndClosesTheTracks) {
    auto brief = std::make_unique<RecordingController>();
    auto starting = brief->start(Uuid::random(), folder, both, std::nullopt, "Call");
    brief.reset();
    QCoro::waitFor(starting);
    EXPECT_TRUE(both->isStopped);

    folder = temporary.path() / "another";
    brief = std::make_unique<RecordingController>();
    QCoro::waitFor(brief->start(Uuid::random(), folder, both, std::nullopt, "Call"));
    both->play(Speaker::you, 0, 3);
    auto stopping = brief->stop();
    brief.reset();
    EXPECT_FALSE(QCoro::waitFor(stopping));
    EXPECT_NEAR(AudioFiles::duration(folder / "you.m4a"), 3, 0.001);
    EXPECT_NEAR(AudioFiles::duration(folder / "them.m4a"), 3, 0.001);
}

TEST_F(RecordingControllerTests, liveLines_comeAndGo_showAsOneTranscript) {
    ScriptedEngine engine;
    controller.makeRecognizer = engine.factory();
    start(std::make_shared<HandCapture>(std::vector{Speaker::you, Speaker::them}), "en-US");
    engine.partial[Speaker::them](Speaker::them, {line(Speaker::them, 2, "Hel")});
    engine.partial[Speaker::them](Speaker::them, {line(Speaker::them, 2, "Hello")});
    engine.commit[Speaker::you](Speaker::you, {line(Speaker::you, 3, "Hi.")});
    engine.partial[Speaker::you](Speaker::you, {line(Speaker::you, 1, "Well")});
    ASSERT_TRUE(waitUntil([&] { return controller.liveSegments().size() == 3; }));
    const auto lines = controller.liveSegments();
    EXPECT_THAT((std::vector{lines[0].text, lines[1].text, lines[2].text}), ElementsAre("Well", "Hello", "Hi."));

    engine.commit[Speaker::you](Speaker::you, {line(Speaker::you, 1, "Well then.")});
    ASSERT_TRUE(waitUntil([&] { return controller.committed().size() == 2; }));
    EXPECT_THAT(controller.partial().at(Speaker::you), IsEmpty());

    const auto late = engine.commit[Speaker::you];
    EXPECT_THAT(stop()->live, SizeIs(3));
    start(std::make_shared<HandCapture>(std::vector{Speaker::you}));
    late(Speaker::you, {line(Speaker::you, 9, "of another call")});
    QCoreApplication::processEvents();
    EXPECT_THAT(controller.liveSegments(), IsEmpty());
}

TEST_F(RecordingControllerTests, stop_recognisersHaveNotHeardAll_saysSo) {
    ScriptedEngine engine;
    controller.makeRecognizer = engine.factory();
    for (const bool isDone : {true, false}) {
        engine.isDone = isDone;
        start(both, "en-US");
        both->play(Speaker::you, 0, 1);
        EXPECT_EQ(stop()->isLiveBehind, !isDone);
    }
}

TEST_F(RecordingControllerTests, stop_recogniserTakesLongToEnd_doesNotHoldTheWindow) {
    std::binary_semaphore mayEnd(0);
    controller.makeRecognizer = [&](Speaker speaker, const std::string&, const auto& onPartial, const auto& onCommit) {
        if (speaker == Speaker::them) {
            return std::unique_ptr<LiveRecognizer>();
        }
        const std::shared_ptr<void> engine(nullptr, [&mayEnd](const void*) { mayEnd.acquire(); });
        const auto noRequest = [engine](const SpeechRequest::OnResult&) { return nullptr; };
        return std::make_unique<LiveRecognizer>(speaker, noRequest, onPartial, onCommit);
    };
    for (const bool isKept : {true, false}) {
        start(both, "en-US");
        if (isKept) {
            EXPECT_TRUE(stop());
        } else {
            controller.discard();
        }
        EXPECT_TRUE(Background::isBusy()) << "the engine has not ended";
        mayEnd.release();
        Background::waitForDone();
    }
}

TEST_F(RecordingControllerTests, pause_countsForNothing) {
    start(both);
    controller.pause();
    EXPECT_TRUE(controller.isPaused());
    const double paused = HostClock::now();
    both->play(Speaker::you, 50, 3);
    both->play(Speaker::them, 50, 3);
    std::vector<double> elapsed;
    QObject::connect(&controller, &RecordingController::ticked, [&] { elapsed.push_back(controller.elapsed()); });
    ASSERT_TRUE(waitUntil([&elapsed] { return elapsed.size() > 3; }));
    EXPECT_EQ(elapsed.front(), elapsed.back());
    controller.resume();
    const double pause = HostClock::now() - paused;
    both->play(Speaker::you, 60, 1);
    both->play(Speaker::them, 60, 1);
    const auto result = stop();
    EXPECT_NEAR(result->duration, 61 - pause, 0.05);
    for (const auto& track : {result->tracks.you, result->tracks.them}) {
        EXPECT_NEAR(AudioFiles::duration(*track), result->duration, 0.001);
        const std::vector<float> levels = AudioFiles::frameLevels(*track, 1);
        EXPECT_LT(levels.at(51), -60) << "nothing of the pause is recorded";
        EXPECT_GT(levels.at(levels.size() - 2), -20);
    }
}

TEST_F(RecordingControllerTests, health_diskFills_warnsAndAsksToBeStopped) {
    std::uintmax_t space = RecordingHealth::leastDisk - 1;
    controller.diskSpace = [&space](const fs::path&) { return space; };
    EXPECT_THROW(start(both), std::runtime_error);
    EXPECT_FALSE(fs::exists(folder));
    EXPECT_FALSE(both->takesSound) << "refused before anything is recorded";
    space = RecordingHealth::leastDisk;
    bool mustStop = false;
    QObject::connect(&controller, &RecordingController::mustStop, [&mustStop] { mustStop = true; });
    start(both);
    EXPECT_FALSE(controller.warning());
    space = RecordingHealth::lowDisk - 1;
    EXPECT_TRUE(waitUntil([&] { return controller.warning().has_value(); }));
    EXPECT_FALSE(mustStop);
    space = RecordingHealth::fullDisk - 1;
    EXPECT_TRUE(waitUntil([&] { return mustStop; }));
}

TEST_F(RecordingControllerTests, diskSpace_folderNotMadeYet_isThatOfItsParent) {
    EXPECT_EQ(controller.diskSpace(folder), controller.diskSpace(temporary.path()));
    EXPECT_TRUE(controller.diskSpace(folder));
}

TEST_F(RecordingControllerTests, lateSide_firstSound_joinsTheRecording) {
    const auto capture = std::make_shared<HandCapture>(std::vector{Speaker::them});
    capture->late = {Speaker::you};
    start(capture);
    EXPECT_EQ(controller.warning(), "Recording their side only — the microphone is off.");
    capture->play(Speaker::them, 0, 20);
    capture->play(Speaker::you, 15, 5);
    EXPECT_TRUE(waitUntil([&] { return !controller.warning(); }));
    EXPECT_THAT(controller.sides(), ElementsAre(Speaker::you, Speaker::them));
    const auto result = stop();
    ASSERT_TRUE(result);
    EXPECT_THAT(result->tracks.speakers(), ElementsAre(Speaker::you, Speaker::them));
    EXPECT_NEAR(AudioFiles::duration(*result->tracks.you), 20, 0.001);
    EXPECT_LT(AudioFiles::frameLevels(*result->tracks.you, 1).at(13), -60);
    EXPECT_GT(AudioFiles::frameLevels(*result->tracks.you, 1).at(17), -20);
}

TEST_F(RecordingControllerTests, lateSide_neverComes_leavesNoTrack) {
    const auto capture = std::make_shared<HandCapture>(std::vector{Speaker::them});
    capture->late = {Speaker::you};
    start(capture);
    capture->play(Speaker::them, 0, 1);
    const auto result = stop();
    ASSERT_TRUE(result);
    EXPECT_THAT(result->tracks.speakers(), ElementsAre(Speaker::them));
    EXPECT_FALSE(fs::exists(folder / "you.m4a"));
}

TEST_F(RecordingControllerTests, tracks_oneCannotBeWritten_saysSoOnceAndKeepsTheOther) {
    std::vector<std::string> warnings;
    QObject::connect(&controller, &RecordingController::warningChanged,
                     [&] { warnings.push_back(controller.warning().value_or("")); });
    start(both);
    fs::remove(folder / "you.m4a");
    const std::string reason =
        "“" + (folder / "you.m4a").string() + "” couldn’t be written: there is no such file or folder.";
    double at = 0;
    EXPECT_TRUE(waitUntil([&] {
        both->play(Speaker::you, at, 0.1);
        both->play(Speaker::them, at, 0.1);
        at += 0.1;
        return controller.elapsed() > 3.5; // the health is looked at every second
    }));
    EXPECT_THAT(warnings, ElementsAre("The sound isn’t being saved: " + reason));
    const auto result = stop();
    ASSERT_TRUE(result);
    EXPECT_EQ(result->loss, "The recording of your side lacks sound from 0:01 on: " + reason);
    EXPECT_THAT(result->tracks.speakers(), ElementsAre(Speaker::them)) << "whose transcript the other would spoil";
    EXPECT_NEAR(AudioFiles::duration(*result->tracks.them), result->duration, 0.001);
}

TEST_F(RecordingControllerTests, tracks_diskIsFullForAWhile_tellWhatTheyLack) {
    start(both);
    double at = 0;
    const auto playUntil = [&](double end) {
        for (; at < end; at += 0.1) {
            both->play(Speaker::you, at, 0.1);
            both->play(Speaker::them, at, 0.1);
        }
    };
    playUntil(3);
    {
        const FileSizeLimit full(4096);
        playUntil(6);
        ASSERT_TRUE(waitUntil([&] { return controller.warning().has_value(); }));
    }
    playUntil(15);
    EXPECT_TRUE(waitUntil([&] { return !controller.warning(); }));
    const auto result = stop();
    ASSERT_TRUE(result && result->loss);
    // How much is lost depends on how far the writing got in that time; what is told is what is lost.
    std::smatch told;
    ASSERT_TRUE(std::regex_search(
        *result->loss, told, std::regex("The recording of your side lacks sound from 0:0([0-9]) to 0:0([0-9]): ")));
    const std::vector<float> levels = AudioFiles::frameLevels(*result->tracks.you, 0.1);
    const auto isSilent = [](float level) { return level < -60; };
    const auto first = std::distance(levels.begin(), std::ranges::find_if(levels, isSilent));
    const auto last = std::ranges::count_if(levels, isSilent) + first - 1;
    EXPECT_NEAR(std::stod(told[1]), 0.1 * static_cast<double>(first), 1);
    EXPECT_NEAR(std::stod(told[2]), 0.1 * static_cast<double>(last), 1);
    EXPECT_NEAR(AudioFiles::duration(*result->tracks.you), 15, 0.1);
    EXPECT_GT(levels.at(130), -20);
}

TEST_F(RecordingControllerTests, folder_movedAway_keepsTheTracksInTheirPlaceToo) {
    start(both);
    both->play(Speaker::you, 0, 3);
    both->play(Speaker::you, 3, 2);
    ASSERT_TRUE(waitUntil([&] { return AudioFiles::duration(folder / "you.m4a") > 1; }));
    fs::rename(folder, temporary.path() / "elsewhere");
    both->play(Speaker::you, 5, 5);
    const auto result = stop();
    ASSERT_TRUE(result);
    EXPECT_FALSE(result->loss);
    EXPECT_NEAR(AudioFiles::duration(*result->tracks.you), 10, 0.001);
    EXPECT_NEAR(AudioFiles::duration(*result->tracks.them), 10, 0.001);
}

TEST_F(RecordingControllerTests, health_microphoneDeliversDigitalSilence_warnsUntilSoundReturns) {
    both->expected = {Speaker::you};
    start(both);
    double at = 0;
    const auto silence = [&] {
        both->play(Speaker::you, at, 0.1, 0);
        both->play(Speaker::them, at, 0.1);
        at += 0.1;
    };
    EXPECT_TRUE(waitUntil([&] {
        silence();
        return controller.warning().has_value();
    }));
    EXPECT_EQ(controller.warning(), "Your microphone is silent — is it muted?");
    EXPECT_GT(controller.elapsed(), 10);
    both->play(Speaker::you, at, 0.1, 0.001);
    EXPECT_TRUE(waitUntil([&] { return !controller.warning(); }));
}

TEST_F(RecordingControllerTests, health_expectedSideDeliversNothing_warnsUntilSoundReturns) {
    start(both);
    EXPECT_FALSE(controller.warning());
    both->expected = {Speaker::you};
    ASSERT_TRUE(waitUntil([&] { return controller.warning().has_value(); }));
    EXPECT_EQ(controller.warning(), "Your microphone is silent — is it muted?");
    both->play(Speaker::you, 6, 1);
    EXPECT_TRUE(waitUntil([&] { return !controller.warning(); }));
}

TEST_F(RecordingControllerTests, samples_longRecording_keepTheLastMinute) {
    std::vector<InkSample> minute(RecordingController::samplesKept, InkSample{1, 1});
    start(std::make_shared<HandCapture>(std::vector{Speaker::you, Speaker::them}));
    controller.loadDemo(60, minute, {}, {}, "Call");
    ASSERT_TRUE(waitUntil([&] { return controller.samples().back() == InkSample{}; }));
    EXPECT_THAT(controller.samples(), SizeIs(RecordingController::samplesKept));
}

} // namespace
} // namespace varnic
