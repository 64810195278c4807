#include "VarnicPlatform/Speech/LiveRecognizer.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace varnic {
namespace {

/// What a recogniser did with a request.
struct Script {
    SpeechRequest::OnResult onResult;
    /// "append", "skip", "end" and "cancel", with the seconds of the first two.
    std::vector<std::pair<std::string, double>> calls;

    [[nodiscard]] double seconds(const std::string& call) const {
        double sum = 0;
        for (const auto& [name, length] : calls) {
            sum += name == call ? length : 0;
        }
        return sum;
    }

    void say(const std::string& text, double start, bool isFinal) const {
        onResult({{{text, start, 0.5}}, text + ".", isFinal});
    }
};

class ScriptedRequest final : public SpeechRequest {
public:
    explicit ScriptedRequest(std::shared_ptr<Script> script) : script_(std::move(script)) {}

    void append(const PcmBuffer& buffer) override {
        script_->calls.emplace_back("append", static_cast<double>(buffer.frames()) / TrackFormat::sampleRate);
    }

    void skip(double seconds) override { script_->calls.emplace_back("skip", seconds); }

    void endAudio() override { script_->calls.emplace_back("end", 0); }

    void cancel() override { script_->calls.emplace_back("cancel", 0); }

private:
    std::shared_ptr<Script> script_;
};

class LiveRecognizerTest : public testing::Test {
protected:
    using Calls = std::vector<std::pair<std::string, double>>;

    void append(double at, double seconds = 0.1) {
        const auto frames = static_cast<std::size_t>(seconds * TrackFormat::sampleRate + 0.5);
        recogniser->append({TrackFormat::processing.rate, {std::vector<float>(frames)}}, at);
    }

    LiveRecognizer::Lines keep(std::vector<Segment>& lines) {
        return [this, &lines](Speaker speaker, const std::vector<Segment>& told) {
            EXPECT_EQ(speaker, Speaker::them);
            ++calls;
            lines = told;
        };
    }

    std::vector<std::shared_ptr<Script>> requests;
    std::vector<Segment> partial;
    std::vector<Segment> committed;
    int calls = 0;
    std::unique_ptr<LiveRecognizer> recogniser = std::make_unique<LiveRecognizer>(
        Speaker::them,
        [this](SpeechRequest::OnResult onResult) {
            requests.push_back(std::make_shared<Script>(Script{std::move(onResult), {}}));
            return std::make_unique<ScriptedRequest>(requests.back());
        },
        keep(partial), keep(committed));
};

TEST_F(LiveRecognizerTest, append_firstBuffer_opensARequestThatBeginsWithIt) {
    EXPECT_TRUE(requests.empty());
    append(7.25);
    ASSERT_EQ(requests.size(), 1U);
    EXPECT_EQ(requests[0]->seconds("skip"), 0);
    requests[0]->say("Hello", 1, true);
    ASSERT_EQ(committed.size(), 1U);
    EXPECT_EQ(committed[0].start, 8.25);
    EXPECT_EQ(committed[0].text, "Hello.");
}

TEST_F(LiveRecognizerTest, append_moreThanFiftySecondsOn_rotatesAndTheOldRequestStillCommits) {
    append(0);
    append(50);
    EXPECT_EQ(requests.size(), 1U) << "exactly fifty seconds";
    append(50.1);
    ASSERT_EQ(requests.size(), 2U);
    EXPECT_EQ(requests[0]->calls.back().first, "end");
    EXPECT_EQ(requests[1]->calls, (Calls{{"append", 0.1}}));
    requests[0]->say("Before", 49, true);
    EXPECT_EQ(committed.at(0).start, 49);
    requests[1]->say("After", 3, true);
    EXPECT_NEAR(committed.at(0).start, 53.1, 1e-9);
    EXPECT_NEAR(committed.at(0).end, 53.6, 1e-9);
    requests[1]->onResult({{{"Over.", -4, 0.5}, {"There.", -2, 0.5}, {"Here.", 1, 0.5}}, "Over. There. Here.", true});
    ASSERT_EQ(committed.size(), 3U) << "what the old request handed over";
    EXPECT_NEAR(committed[0].end, 46.6, 1e-9);
    EXPECT_NEAR(committed[1].start, 48.1, 1e-9);
    EXPECT_NEAR(committed[1].end, 48.6, 1e-9);
}

TEST_F(LiveRecognizerTest, result_byItsKind_isPartialOrCommitted) {
    append(0);
    requests[0]->say("Hel", 1, false);
    EXPECT_EQ(partial.at(0).text, "Hel.");
    EXPECT_TRUE(committed.empty());
    requests[0]->onResult({{{"One.", 1, 0.5}, {"Two.", 3, 0.5}}, "One. Two.", true});
    EXPECT_EQ(committed.size(), 2U) << "a pause of more than 1.2 seconds ends a line";
    requests[0]->onResult({{}, "", true});
    EXPECT_TRUE(committed.empty()) << "nothing was said: the partial line goes";
    EXPECT_EQ(calls, 3);
}

TEST_F(LiveRecognizerTest, append_timesWithGaps_becomeSilenceOfTheirLength) {
    append(10);
    append(14.1);
    EXPECT_EQ(requests[0]->calls.at(1).first, "skip");
    EXPECT_NEAR(requests[0]->seconds("skip"), 4, 1e-9);
    double at = 14.2;
    for (int piece = 0; piece < 100; ++piece, at += 0.11) {
        append(at);
    }
    const double given = requests[0]->seconds("skip") + requests[0]->seconds("append");
    EXPECT_NEAR(given, at - 0.01 - 10, 0.05) << "a hundred gaps of 0.01 s";
    append(at - 0.06);
    EXPECT_EQ(requests[0]->calls.back().first, "append") << "an early buffer runs on";
}

TEST_F(LiveRecognizerTest, endAudio_beforeAnySound_opensNothing) {
    recogniser->endAudio();
    append(0);
    EXPECT_TRUE(requests.empty()) << "nothing follows the end";
}

TEST_F(LiveRecognizerTest, endAudio_whileSpeaking_commitsAndTakesNoMore) {
    append(0);
    recogniser->endAudio();
    recogniser->endAudio();
    EXPECT_EQ(requests[0]->calls, (Calls{{"append", 0.1}, {"end", 0}}));
    append(0.1);
    append(60);
    EXPECT_EQ(requests.size(), 1U);
    EXPECT_EQ(requests[0]->calls.back().first, "end");
    requests[0]->say("Bye", 0, true);
    EXPECT_EQ(committed.at(0).text, "Bye.");
}

TEST_F(LiveRecognizerTest, cancel_withRequestsAtWork_silencesAllOfThem) {
    append(0);
    append(60);
    recogniser->cancel();
    EXPECT_EQ(requests[1]->calls.back().first, "cancel");
    requests[0]->say("Old", 1, true);
    requests[1]->say("New", 1, false);
    recogniser.reset();
    requests[1]->say("Late", 1, true);
    EXPECT_EQ(calls, 0);
}

} // namespace
} // namespace varnic
