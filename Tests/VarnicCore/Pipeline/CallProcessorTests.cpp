#include "VarnicCore/Pipeline/CallProcessor.h"

#include "VarnicCore/Audio/AudioMix.h"
#include "VarnicCore/Audio/Room.h"
#include "VarnicCore/Summariser/ExtractiveSummariser.h"
#include "VarnicCore/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <condition_variable>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

namespace varnic {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A summariser that always fails.
class FailingSummariser final : public Summariser {
public:
    [[nodiscard]] std::string displayName() const override { return "Failing"; }

    [[nodiscard]] bool isLocal() const override { return true; }

    [[nodiscard]] CallDigest digest(const std::vector<Segment>& /*segments*/, const DigestContext& /*context*/,
                                    std::stop_token /*stop*/) const override {
        throw std::runtime_error("no digest today");
    }
};

/// The far side fails at once; the near side ends only when it is asked to stop.
class WaitingTranscriber final : public Transcriber {
public:
    [[nodiscard]] std::vector<Segment> transcribe(const SpokenTrack& track, const ProgressCallback& /*progress*/,
                                                  std::stop_token stop) const override {
        if (track.speaker == Speaker::them) {
            throw TranscriberError::unavailable();
        }
        std::mutex mutex;
        std::condition_variable_any wake;
        std::unique_lock lock(mutex);
        wake.wait(lock, stop, [] { return false; });
        throw TranscriberError::failed("cancelled");
    }
};

/// What the fake one says, heard with a model that is better than the small one.
class LargeTranscriber final : public Transcriber {
public:
    explicit LargeTranscriber(std::shared_ptr<const FakeTranscriber> fake) : fake_(std::move(fake)) {}

    [[nodiscard]] std::vector<Segment> transcribe(const SpokenTrack& track, const ProgressCallback& progress,
                                                  std::stop_token stop) const override {
        const std::lock_guard guard(lock);
        told[track.speaker] = track.language;
        return fake_->transcribe(track, progress, std::move(stop));
    }

    [[nodiscard]] SpokenLanguages languages(const CallTracks& /*tracks*/,
                                            const std::stop_token& /*stop*/) const override {
        return spoken;
    }

    [[nodiscard]] bool surpasses(const std::string& liveModel, const SpokenLanguages& /*spoken*/) const override {
        return liveModel == "small";
    }

    SpokenLanguages spoken;
    /// What the tracks were handed over as.
    mutable std::map<Speaker, std::string> told;
    mutable std::mutex lock;

private:
    std::shared_ptr<const FakeTranscriber> fake_;
};

class CallProcessorTest : public testing::Test {
protected:
    CallProcessorTest() {
        fake->segments = {Segment(Speaker::you, 4, 7, "I'll send the designs by Friday."),
                          Segment(Speaker::them, 0, 3, "We decided that the price is forty dollars a month.")};
        recording.noteID = Uuid::random();
        recording.tracks = {touch("you.m4a"), touch("them.m4a")};
        recording.duration = 8;
    }

    std::filesystem::path touch(const std::string& name) {
        const auto file = folder.path() / name;
        std::ofstream(file) << "sound";
        return file;
    }

    [[nodiscard]] CallProcessor processor() const { return {transcriber, summariser, Region{}}; }

    /// They speak all the time, you from second 24 to 27; headphones are taken off at 15.
    void writeTracks(bool hasEcho) const {
        constexpr int rate = 48'000;
        const std::vector<float> them = babble(30, 1, rate);
        const std::vector<float> voice = babble(30, 2, rate);
        std::vector<float> microphone(them.size());
        if (hasEcho) {
            overhear(microphone, them, -12, 0.05, rate);
            std::fill_n(microphone.begin(), 15 * rate, 0.0F);
        }
        std::transform(voice.begin() + 24 * rate, voice.begin() + 27 * rate, microphone.begin() + 24 * rate,
                       microphone.begin() + 24 * rate, std::plus<>());
        AudioMix::write(microphone, *recording.tracks.you, true);
        AudioMix::write(them, *recording.tracks.them, true);
    }

    static std::vector<std::string> texts(const Note& note) {
        std::vector<std::string> texts;
        std::ranges::transform(note.call->segments, std::back_inserter(texts), &Segment::text);
        return texts;
    }

    WrittenCall write(const std::stop_token& stop = {}) {
        stages.clear();
        const auto report = [this](ProcessingStage stage) {
            const std::lock_guard guard(lock);
            stages.push_back(stage.label());
        };
        return processor().process(recording, {.themName = "Maya"}, report, stop);
    }

    Note process() { return write().note; }

    TemporaryFolder folder;
    std::shared_ptr<FakeTranscriber> fake = std::make_shared<FakeTranscriber>();
    std::shared_ptr<LargeTranscriber> transcriber = std::make_shared<LargeTranscriber>(fake);
    std::shared_ptr<const Summariser> summariser = std::make_shared<ExtractiveSummariser>();
    Recording recording;
    std::mutex lock;
    std::vector<std::string> stages;
};

TEST_F(CallProcessorTest, process_twoTracks_givesOrderedTranscriptDigestAndBlocks) {
    const Note note = process();
    ASSERT_TRUE(note.call);
    ASSERT_EQ(note.call->segments.size(), 2U);
    EXPECT_EQ(note.call->segments[0].speaker, Speaker::them);
    EXPECT_EQ(note.call->themName, "Maya");
    EXPECT_THAT(note.call->tracks, ElementsAre(Speaker::you, Speaker::them));
    EXPECT_EQ(note.call->problem, std::nullopt);
    ASSERT_EQ(note.todos().size(), 1U);
    EXPECT_EQ(note.todos()[0].text, "Send the designs by Friday");
    EXPECT_EQ(note.blocks.front().text, "To-dos");
    EXPECT_EQ(stages.front(), "Writing the transcript…");
    EXPECT_EQ(stages[stages.size() - 2], "Summarising…");
    EXPECT_EQ(stages.back(), "Done");
}

TEST_F(CallProcessorTest, process_nobodyHeard_saysSo) {
    fake->segments.clear();
    EXPECT_EQ(process().call->problem, "Nobody was heard on this recording.");
    recording.tracks = {};
    const Note note = process();
    EXPECT_EQ(note.call->problem, "Nobody was heard on this recording.");
    EXPECT_THAT(note.call->tracks, IsEmpty());
    EXPECT_EQ(stages.back(), "Done");
}

TEST_F(CallProcessorTest, process_oneTrackFails_losesTheTranscriptAndSaysWhy) {
    std::filesystem::remove(*recording.tracks.you);
    const Note note = process();
    EXPECT_THAT(note.call->segments, IsEmpty());
    EXPECT_EQ(note.call->problem, "The recording’s audio file is missing.");
    EXPECT_EQ(note.call->digest, std::nullopt);
}

TEST_F(CallProcessorTest, process_oneTrackFails_stopsTheOtherAndReportsTheCause) {
    const CallProcessor waiting(std::make_shared<WaitingTranscriber>(), summariser, Region{});
    const Note note = waiting.process(recording, {}, [](ProcessingStage) {}).note;
    EXPECT_EQ(note.call->problem, "Speech recognition isn’t available right now.");
}

TEST_F(CallProcessorTest, process_liveTranscript_standsInForTranscriptionUnlessEmpty) {
    fake->failure = TranscriberError::notAuthorized();
    recording.live = {Segment(Speaker::them, 1, 2, "Hello from the live line.")};
    const Note live = process();
    EXPECT_EQ(live.call->problem, std::nullopt);
    EXPECT_EQ(live.call->segments.size(), 1U);
    EXPECT_THAT(stages, ElementsAre("Summarising…", "Done"));

    recording.live = std::vector<Segment>{};
    EXPECT_EQ(process().call->problem, "Speech Recognition is turned off for Varnic.");
}

TEST_F(CallProcessorTest, process_liveTranscriptIsOutdone_standsOnlyWhereTheTracksGiveNone) {
    const std::vector<std::string> live{"We decided on the price.", "I lend the sign."};
    const std::vector<std::string> tracks{fake->segments[1].text, fake->segments[0].text};
    recording.live = {Segment(Speaker::you, 24, 27, live[1]), Segment(Speaker::them, 20, 26, live[0])};

    struct Case {
        const char* why;
        bool isBehind = false;
        std::string model;
        bool hasEcho = false;
        bool isOutdone = true;
    };

    const std::vector<Case> cases{{.why = "the machine did not keep up", .isBehind = true, .model = {}},
                                  {.why = "a better model is installed", .model = "small"},
                                  {.why = "the loudspeakers were overheard", .model = {}, .hasEcho = true},
                                  {.why = "nothing is wrong", .model = "large", .isOutdone = false}};
    for (const Case& one : cases) {
        SCOPED_TRACE(one.why);
        recording.isLiveBehind = one.isBehind;
        recording.liveModel = one.model;
        writeTracks(one.hasEcho);
        fake->failure.reset();
        const WrittenCall written = write();
        EXPECT_EQ(texts(written.note), one.isOutdone ? tracks : live);
        EXPECT_FALSE(written.isStopgap);
        EXPECT_EQ(stages.front(), one.isOutdone ? "Writing the transcript…" : "Summarising…");
        fake->failure = TranscriberError::unavailable();
        const WrittenCall kept = write();
        EXPECT_EQ(texts(kept.note), live) << "better than none";
        EXPECT_EQ(kept.note.call->problem, std::nullopt);
        EXPECT_EQ(kept.isStopgap, one.isOutdone);
        std::stop_source stopped;
        stopped.request_stop();
        EXPECT_TRUE(write(stopped.get_token()).isStopgap) << "as far as is known";
    }
}

TEST_F(CallProcessorTest, process_languages_areThoseOfTheSidesAndTheNote) {
    EXPECT_EQ(process().call->language, "en-US") << "nobody says";
    transcriber->spoken = {.you = "de", .them = "fr", .call = "fr"};
    const Note note = process();
    EXPECT_EQ(note.call->language, "fr");
    EXPECT_EQ(transcriber->told, (std::map<Speaker, std::string>{{Speaker::you, "de"}, {Speaker::them, "fr"}}));
    transcriber->spoken = {.you = "es", .them = "es", .call = "es"};
    EXPECT_EQ(processor().retranscribe(note, recording.tracks, {}).call->language, "es");
    fake->failure = TranscriberError::unavailable();
    EXPECT_EQ(process().call->language, "es") << "to be tried again in it";
}

TEST_F(CallProcessorTest, process_liveLinesInAnotherLanguage_areOutdone) {
    writeTracks(false);
    recording.live = {Segment(Speaker::them, 1, 2, "Good and talk.")};
    recording.liveModel = "large";
    recording.liveLanguage = "en-GB";
    EXPECT_EQ(recording.record().language, "en-GB");
    for (const auto& [you, them, isOutdone] : {std::tuple("de", "de", true), std::tuple("en", "de", true),
                                               std::tuple("en-US", "en", false), std::tuple("", "", false)}) {
        transcriber->spoken = {.you = you, .them = them, .call = them};
        fake->failure.reset();
        const Note note = process();
        EXPECT_EQ(note.call->segments.size(), isOutdone ? 2U : 1U) << you << ' ' << them;
        EXPECT_EQ(note.call->language, isOutdone ? "de" : "en-GB");
        fake->failure = TranscriberError::unavailable();
        EXPECT_EQ(process().call->language, "en-GB") << "that of the lines which stay";
    }
}

TEST_F(CallProcessorTest, process_summariserFails_keepsTheTranscript) {
    summariser = std::make_shared<FailingSummariser>();
    const Note note = process();
    EXPECT_EQ(note.call->segments.size(), 2U);
    EXPECT_EQ(note.call->digest, std::nullopt);
    EXPECT_EQ(note.call->problem, std::nullopt);
    EXPECT_FALSE(note.title.empty());
    EXPECT_EQ(note.blocks.front().text, "Notes");
}

TEST_F(CallProcessorTest, retranscribe_keepsTheUsersTitleAndTheOldDigestWhenNobodyIsHeard) {
    Note note = process();
    note.title = "My title";
    fake->segments = {Segment(Speaker::you, 0, 2, "I'll call the printer tomorrow.")};
    const Note again = processor().retranscribe(note, recording.tracks, {});
    EXPECT_EQ(again.title, "My title");
    ASSERT_EQ(again.todos().size(), 1U);
    EXPECT_EQ(again.todos()[0].text, "Call the printer tomorrow");

    fake->segments.clear();
    const Note silent = processor().retranscribe(again, recording.tracks, {});
    EXPECT_EQ(silent.call->problem, "Nobody was heard on this recording.");
    EXPECT_EQ(silent.call->digest, again.call->digest);

    fake->failure = TranscriberError::noOnDevice("German");
    EXPECT_THROW((void)processor().retranscribe(note, recording.tracks, {}), TranscriberError);
}

TEST_F(CallProcessorTest, retranscribe_recordingThatLostSound_saysSoStill) {
    recording.loss = CallProblem::loss(Speaker::you, 61, 65, "The disk is full.");
    EXPECT_EQ(recording.loss, "The recording of your side lacks sound from 1:01 to 1:05: The disk is full.");
    const Note note = process();
    EXPECT_EQ(processor().retranscribe(note, recording.tracks, {}).call->problem, recording.loss);
    fake->segments.clear();
    const Note silent = processor().retranscribe(note, recording.tracks, {});
    EXPECT_EQ(silent.call->problem, nobodyHeard + (" " + *recording.loss));
    EXPECT_EQ(processor().retranscribe(silent, recording.tracks, {}).call->problem, silent.call->problem);
}

TEST(ProcessingStage, label_showsWholePercentOnlyAboveZero) {
    EXPECT_EQ(ProcessingStage::transcribing(0).label(), "Writing the transcript…");
    EXPECT_EQ(ProcessingStage::transcribing(0.42).label(), "Writing the transcript… 42%");
    EXPECT_EQ(ProcessingStage::transcribing(0.999).label(), "Writing the transcript… 99%");
}

TEST(ProgressBox, update_countsEachTrackByItsShare) {
    ProgressBox box(2);
    EXPECT_DOUBLE_EQ(box.update(Speaker::you, 1.0), 0.5);
    EXPECT_DOUBLE_EQ(box.update(Speaker::them, 0.5), 0.75);
    ProgressBox none(0);
    EXPECT_DOUBLE_EQ(none.update(Speaker::you, 0.5), 0.5);
}

} // namespace
} // namespace varnic
