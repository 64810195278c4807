#include "VarnicPlatform/Speech/UtteranceListener.h"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

namespace varnic {
namespace {

constexpr int rate = UtteranceListener::rate;

/// A listener whose engine says one word for each piece it hears, the number of the piece.
class UtteranceListenerTest : public testing::Test {
protected:
    /// A tone, which counts as speech where it is told by the level alone, or next to silence.
    void hear(double seconds, bool speech) {
        std::vector<float> samples(static_cast<std::size_t>(std::lround(seconds * rate)));
        for (float& sample : samples) {
            sample = (speech ? 0.1F : 0.0001F) * std::sin(0.3F * static_cast<float>(++time_));
        }
        listener_.add(samples);
    }

    Recognition decode(std::span<const float> samples) {
        heard_.push_back(static_cast<double>(samples.size()) / rate);
        now_ += cost_;
        if (fails_) {
            throw std::runtime_error("no memory");
        }
        return {says_ ? "Nr. " + std::to_string(heard_.size()) : "", {}, 2};
    }

    [[nodiscard]] std::vector<std::string> texts() const {
        std::vector<std::string> texts;
        for (const SpeechResult& result : results_) {
            texts.push_back((result.isFinal ? "" : "…") + result.formatted);
        }
        return texts;
    }

    using Texts = std::vector<std::string>;

    bool says_ = true;
    bool fails_ = false;
    int time_ = 0;
    double now_ = 0;
    /// Seconds that a decoding takes.
    double cost_ = 0.01;
    std::vector<double> heard_;
    std::vector<SpeechResult> results_;
    LiveVoice voice_{std::nullopt};
    UtteranceListener listener_{voice_, [this](std::span<const float> samples) { return decode(samples); },
                                [this](const SpeechResult& result) { results_.push_back(result); },
                                [this] { return now_; }};
};

TEST_F(UtteranceListenerTest, add_pausesOfDifferentLength_endUtterancesFromSixTenthsOn) {
    hear(1, false);
    hear(1, true);
    hear(0.4, false);
    hear(1, true);
    hear(0.55, false);
    EXPECT_TRUE(results_.empty());
    hear(0.1, false);
    EXPECT_EQ(texts(), Texts{"Nr. 1"});
    EXPECT_NEAR(results_.at(0).words.at(0).start, 1, 0.1);
    EXPECT_NEAR(results_.at(0).words.at(1).end(), 3.4, 0.1);
    EXPECT_NEAR(heard_.at(0), 3, 0.15) << "0.3 s of real sound on either side";
    hear(2, false);
    hear(1, true);
    EXPECT_EQ(results_.size(), 1U) << "the next one is still open";
    listener_.finish();
    EXPECT_EQ(texts(), (Texts{"Nr. 1", "Nr. 2"}));
    EXPECT_NEAR(results_.at(1).words.at(0).start, 6.05, 0.1);
}

TEST_F(UtteranceListenerTest, offerPartial_whileSpeaking_hearsAgainOnlyWhatIsNew) {
    hear(1, false);
    listener_.offerPartial(false);
    EXPECT_TRUE(results_.empty());
    for (int piece = 0; piece < 48; ++piece) {
        hear(0.1, true);
        listener_.offerPartial(false);
    }
    EXPECT_GE(results_.size(), 5U);
    EXPECT_LE(results_.size(), 8U) << "every 0.7 s";
    for (int piece = 0; piece < 60; ++piece) {
        hear(0.1, true);
        listener_.offerPartial(false);
    }
    EXPECT_LE(results_.size(), 13U) << "every 1.5 s once it is long";
    EXPECT_FALSE(results_.back().isFinal);
    EXPECT_NEAR(results_.back().words.at(0).start, 1, 0.1);
}

TEST_F(UtteranceListenerTest, offerPartial_engineIsSlow_hearsLessOften) {
    cost_ = 0.9;
    hear(1, false);
    for (int piece = 0; piece < 140; ++piece) {
        hear(0.1, true);
        listener_.offerPartial(false);
    }
    EXPECT_GE(results_.size(), 2U);
    EXPECT_LE(results_.size(), 3U);
}

TEST_F(UtteranceListenerTest, offerPartial_inThePause_isTheFinalResultWithoutHearingAgain) {
    hear(1, false);
    hear(1.5, true);
    hear(0.4, false);
    listener_.offerPartial(false);
    listener_.offerPartial(false);
    hear(0.5, false);
    EXPECT_EQ(texts(), (Texts{"…Nr. 1", "Nr. 1"}));
    hear(1, true);
    listener_.offerPartial(true);
    listener_.finish();
    EXPECT_EQ(texts(), (Texts{"…Nr. 1", "Nr. 1", "…Nr. 2", "Nr. 2"})) << "the same where no more sound comes";
}

TEST_F(UtteranceListenerTest, add_speechWithoutPause_isCutAndAllOfItIsHeardOnce) {
    hear(1, false);
    hear(12, true);
    hear(0.2, false);
    hear(27.8, true);
    hear(1, false);
    ASSERT_GE(heard_.size(), 3U);
    double sum = 0;
    for (const double seconds : heard_) {
        EXPECT_LE(seconds, 15.5);
        sum += seconds;
    }
    EXPECT_NEAR(sum, 40.6, 0.2);
    EXPECT_NEAR(heard_.at(0), 12.4, 0.2) << "cut where it was quiet";
    for (std::size_t index = 0; index < results_.size(); ++index) {
        EXPECT_TRUE(results_[index].isFinal);
        EXPECT_TRUE(index == 0 || results_[index].words.front().start >= results_[index - 1].words.back().end() - 0.01);
    }
}

TEST_F(UtteranceListenerTest, skip_whileSpeaking_endsTheUtteranceAndKeepsTheTimes) {
    hear(1, false);
    hear(1, true);
    listener_.skip(40LL * rate + 7);
    EXPECT_EQ(texts(), Texts{"Nr. 1"});
    hear(1, true);
    listener_.skip(rate / 5);
    hear(1, true);
    listener_.finish();
    EXPECT_EQ(texts(), (Texts{"Nr. 1", "Nr. 2"})) << "a short gap is a short pause";
    EXPECT_NEAR(results_.at(1).words.at(0).start, 42, 0.05);
    EXPECT_NEAR(results_.at(1).words.at(1).end(), 44.2, 0.05);
    EXPECT_LT(heard_.at(1), 2.6);
}

TEST_F(UtteranceListenerTest, add_engineFailsOrHearsNothing_onlyThatUtteranceIsLost) {
    fails_ = true;
    hear(1, true);
    hear(1, false);
    EXPECT_TRUE(results_.empty());
    fails_ = false;
    hear(1.5, true);
    listener_.offerPartial(false);
    says_ = false;
    hear(1.5, true);
    hear(1, false);
    EXPECT_EQ(texts(), (Texts{"…Nr. 2", ""})) << "what was shown is taken back";
    says_ = true;
    hear(1, true);
    hear(1, false);
    EXPECT_EQ(texts(), (Texts{"…Nr. 2", "", "Nr. 4"}));
}

TEST_F(UtteranceListenerTest, add_samplesThatAreNoNumbers_areNoSpeech) {
    hear(1, true);
    listener_.add(std::vector<float>(3 * rate, std::nanf("")));
    EXPECT_EQ(texts(), Texts{"Nr. 1"});
    hear(1, true);
    hear(1, false);
    EXPECT_EQ(texts(), (Texts{"Nr. 1", "Nr. 2"}));
}

} // namespace
} // namespace varnic
