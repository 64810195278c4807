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
        recogniser_->append({TrackFormat::processing.rate, {std::vector<float>(frames)}}, at);
    }

    LiveRecognizer::Lines keep(std::vector<Segment>& lines) {
        return [this, &lines](Speaker speaker, const std::vector<Segment>& told) {
            EXPECT_EQ(speaker, Speaker::them);
            ++calls_;
            lines = told;
        };
    }

    std::vector<std::shared_ptr<Script>> requests_;
    std::vector<Segment> partial_;
    std::vector<Segment> committed_;
    int calls_ = 0;
    std::unique_ptr<LiveRecognizer> recogniser_ = std::make_unique<LiveRecognizer>(
        Speaker::them,
        [this](SpeechRequest::OnResult onResult) {
            requests_.push_back(std::make_shared<Script>(Script{std::move(onResult), {}}));
            return std::make_unique<ScriptedRequest>(requests_.back());
        },
        keep(partial_), keep(committed_));
};

TEST_F(LiveRecognizerTest, append_firstBuffer_opensARequestThatBeginsWithIt) {
    EXPECT_TRUE(requests_.empty());
    append(7.25);
    ASSERT_EQ(requests_.size(), 1U);
    EXPECT_EQ(requests_[0]->seconds("skip"), 0);
    requests_[0]->say("Hello", 1, true);
    ASSERT_EQ(committed_.size(), 1U);
    EXPECT_EQ(committed_[0].start, 8.25);
    EXPECT_EQ(committed_[0].text, "Hello.");
}

TEST_F(LiveRecognizerTest, append_moreThanFiftySecondsOn_rotatesAndTheOldRequestStillCommits) {
    append(0);
    append(50);
    EXPECT_EQ(requests_.size(), 1U) << "exactly fifty seconds";
    append(50.1);
    ASSERT_EQ(requests_.size(), 2U);
    EXPECT_EQ(requests_[0]->calls.back().first, "end");
    EXPECT_EQ(requests_[1]->calls, (Calls{{"append", 0.1}}));
    requests_[0]->say("Before", 49, true);
    EXPECT_EQ(committed_.at(0).start, 49);
    requests_[1]->say("After", 3, true);
    EXPECT_NEAR(committed_.at(0).start, 53.1, 1e-9);
    EXPECT_NEAR(committed_.at(0).end, 53.6, 1e-9);
}

TEST_F(LiveRecognizerTest, result_byItsKind_isPartialOrCommitted) {
    append(0);
    requests_[0]->say("Hel", 1, false);
    EXPECT_EQ(partial_.at(0).text, "Hel.");
    EXPECT_TRUE(committed_.empty());
    requests_[0]->onResult({{{"One.", 1, 0.5}, {"Two.", 3, 0.5}}, "One. Two.", true});
    EXPECT_EQ(committed_.size(), 2U) << "a pause of more than 1.2 seconds ends a line";
    requests_[0]->onResult({{}, "", true});
    EXPECT_TRUE(committed_.empty()) << "nothing was said: the partial line goes";
    EXPECT_EQ(calls_, 3);
}

TEST_F(LiveRecognizerTest, append_timesWithGaps_becomeSilenceOfTheirLength) {
    append(10);
    append(14.1);
    EXPECT_EQ(requests_[0]->calls.at(1).first, "skip");
    EXPECT_NEAR(requests_[0]->seconds("skip"), 4, 1e-9);
    double at = 14.2;
    for (int piece = 0; piece < 100; ++piece, at += 0.11) {
        append(at);
    }
    const double given = requests_[0]->seconds("skip") + requests_[0]->seconds("append");
    EXPECT_NEAR(given, at - 0.01 - 10, 0.05) << "a hundred gaps of 0.01 s";
    append(at - 0.06);
    EXPECT_EQ(requests_[0]->calls.back().first, "append") << "an early buffer runs on";
}

TEST_F(LiveRecognizerTest, endAudio_beforeAnySound_opensNothing) {
    recogniser_->endAudio();
    append(0);
    EXPECT_TRUE(requests_.empty()) << "nothing follows the end";
}

TEST_F(LiveRecognizerTest, endAudio_whileSpeaking_commitsAndTakesNoMore) {
    append(0);
    recogniser_->endAudio();
    recogniser_->endAudio();
    EXPECT_EQ(requests_[0]->calls, (Calls{{"append", 0.1}, {"end", 0}}));
    append(0.1);
    append(60);
    EXPECT_EQ(requests_.size(), 1U);
    EXPECT_EQ(requests_[0]->calls.back().first, "end");
    requests_[0]->say("Bye", 0, true);
    EXPECT_EQ(committed_.at(0).text, "Bye.");
}

TEST_F(LiveRecognizerTest, cancel_withRequestsAtWork_silencesAllOfThem) {
    append(0);
    append(60);
    recogniser_->cancel();
    EXPECT_EQ(requests_[1]->calls.back().first, "cancel");
    requests_[0]->say("Old", 1, true);
    requests_[1]->say("New", 1, false);
    recogniser_.reset();
    requests_[1]->say("Late", 1, true);
    EXPECT_EQ(calls_, 0);
}

} // namespace
} // namespace varnic
