#include "VarnicPlatform/Speech/UtteranceRecognizer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

namespace varnic {
namespace {

constexpr int rate = UtteranceRecognizer::rate;

/// A listener whose engine says one word for each piece it hears, the number of the piece.
class UtteranceRecognizerTest : public testing::Test {
protected:
    /// A tone, which counts as speech where it is told by the level alone, or next to silence.
    void hear(double seconds, bool speech) {
        std::vector<float> samples(static_cast<std::size_t>(std::lround(seconds * rate)));
        for (float& sample : samples) {
            sample = (speech ? 0.1F : 0.0001F) * std::sin(0.3F * static_cast<float>(++time));
        }
        listener.add(samples);
    }

    Recognition decode(std::span<const float> samples) {
        heard.push_back(static_cast<double>(samples.size()) / rate);
        now += cost;
        if (fails) {
            throw std::runtime_error("no memory");
        }
        return {says ? "Nr. " + std::to_string(heard.size()) : "", {}, 2};
    }

    [[nodiscard]] std::vector<std::string> texts() const {
        std::vector<std::string> texts;
        for (const SpeechResult& result : results) {
            texts.push_back((result.isFinal ? "" : "…") + result.formatted);
        }
        return texts;
    }

    using Texts = std::vector<std::string>;

    bool says = true;
    bool fails = false;
    int time = 0;
    double now = 0;
    /// Seconds that a decoding takes.
    double cost = 0.01;
    std::vector<double> heard;
    std::vector<SpeechResult> results;
    LiveVoiceActivity voice{std::nullopt};
    UtteranceRecognizer listener{voice,
                                 [this](std::span<const float> samples) { return decode(samples); },
                                 [this](const SpeechResult& result) { results.push_back(result); },
                                 {},
                                 [this] { return now; }};
};

TEST_F(UtteranceRecognizerTest, add_pausesOfDifferentLength_endUtterancesFromSixTenthsOn) {
    hear(1, false);
    hear(1, true);
    hear(0.4, false);
    hear(1, true);
    hear(0.55, false);
    EXPECT_TRUE(results.empty());
    hear(0.1, false);
    EXPECT_EQ(texts(), Texts{"Nr. 1"});
    EXPECT_NEAR(results.at(0).words.at(0).start, 1, 0.1);
    EXPECT_NEAR(results.at(0).words.at(1).end(), 3.4, 0.1);
    EXPECT_NEAR(heard.at(0), 3, 0.15) << "0.3 s of real sound on either side";
    hear(2, false);
    hear(1, true);
    EXPECT_EQ(results.size(), 1U) << "the next one is still open";
    listener.finish();
    EXPECT_EQ(texts(), (Texts{"Nr. 1", "Nr. 2"}));
    EXPECT_NEAR(results.at(1).words.at(0).start, 6.05, 0.1);
}

TEST_F(UtteranceRecognizerTest, add_shortPauseBehindMuchSpeech_endsTheUtterance) {
    hear(1, false);
    hear(3.5, true);
    hear(0.4, false);
    EXPECT_TRUE(results.empty()) << "not enough yet to be decoded by itself";
    hear(1.5, true);
    hear(0.4, false);
    EXPECT_EQ(texts(), Texts{"Nr. 1"});
    hear(1, true);
    hear(0.65, false);
    EXPECT_EQ(texts(), (Texts{"Nr. 1", "Nr. 2"}));
    EXPECT_NEAR(heard.at(0), 6, 0.15);
    EXPECT_NEAR(heard.at(1), 1.6, 0.25) << "nothing is heard twice";
}

TEST_F(UtteranceRecognizerTest, offerPartial_whileSpeaking_hearsAgainOnlyWhatIsNew) {
    hear(1, false);
    listener.offerPartial(false);
    EXPECT_TRUE(results.empty());
    for (int piece = 0; piece < 28; ++piece) {
        hear(0.1, true);
        listener.offerPartial(false);
    }
    EXPECT_GE(results.size(), 3U);
    EXPECT_LE(results.size(), 4U) << "every 0.7 s";
    double sum = 0;
    for (int piece = 0; piece < 68; ++piece) {
        hear(0.1, true);
        listener.offerPartial(false);
    }
    for (const double seconds : heard) {
        sum += seconds;
    }
    EXPECT_GE(results.size(), 8U);
    EXPECT_LE(sum, 5 * 9.6) << "less often as it grows";
    EXPECT_FALSE(results.back().isFinal);
    EXPECT_NEAR(results.back().words.at(0).start, 1, 0.1);
}

TEST_F(UtteranceRecognizerTest, offerPartial_engineIsSlow_hearsLessOften) {
    cost = 0.9;
    hear(1, false);
    for (int piece = 0; piece < 95; ++piece) {
        hear(0.1, true);
        listener.offerPartial(false);
    }
    EXPECT_EQ(results.size(), 2U);
}

TEST_F(UtteranceRecognizerTest, offerPartial_inThePause_isTheFinalResultWithoutHearingAgain) {
    hear(1, false);
    hear(1.5, true);
    hear(0.4, false);
    listener.offerPartial(false);
    listener.offerPartial(false);
    hear(0.5, false);
    EXPECT_EQ(texts(), (Texts{"…Nr. 1", "Nr. 1"}));
    hear(1, true);
    listener.offerPartial(true);
    listener.finish();
    EXPECT_EQ(texts(), (Texts{"…Nr. 1", "Nr. 1", "…Nr. 2", "Nr. 2"})) << "the same where no more sound comes";
}

TEST_F(UtteranceRecognizerTest, add_speechWithoutPause_isCutAndAllOfItIsHeardOnce) {
    hear(1, false);
    hear(8, true);
    hear(0.2, false);
    hear(31.8, true);
    hear(1, false);
    ASSERT_GE(heard.size(), 4U);
    double sum = 0;
    for (const double seconds : heard) {
        EXPECT_LE(seconds, 10.5);
        sum += seconds;
    }
    EXPECT_NEAR(sum, 40.6, 0.2);
    EXPECT_NEAR(heard.at(0), 8.4, 0.2) << "cut where it was quiet";
    for (std::size_t index = 0; index < results.size(); ++index) {
        EXPECT_TRUE(results[index].isFinal);
        EXPECT_TRUE(index == 0 || results[index].words.front().start >= results[index - 1].words.back().end() - 0.01);
    }
}

TEST_F(UtteranceRecognizerTest, skip_whileSpeaking_endsTheUtteranceAndKeepsTheTimes) {
    hear(1, false);
    hear(1, true);
    listener.skip(40LL * rate + 7);
    EXPECT_EQ(texts(), Texts{"Nr. 1"});
    hear(1, true);
    listener.skip(rate / 5);
    hear(1, true);
    listener.finish();
    EXPECT_EQ(texts(), (Texts{"Nr. 1", "Nr. 2"})) << "a short gap is a short pause";
    EXPECT_NEAR(results.at(1).words.at(0).start, 42, 0.05);
    EXPECT_NEAR(results.at(1).words.at(1).end(), 44.2, 0.05);
    EXPECT_LT(heard.at(1), 2.6);
}

TEST_F(UtteranceRecognizerTest, takeAudio_whileSpeaking_isHeardWithWhatFollowsBeforeTheBeginning) {
    hear(1, false);
    hear(2.001, true);
    listener.offerPartial(false);
    UtteranceRecognizer next{voice, [this](std::span<const float> samples) { return decode(samples); },
                             [this](const SpeechResult& result) { results.push_back(result); }, listener.takeAudio()};
    next.finish();
    EXPECT_EQ(texts(), (Texts{"…Nr. 1", "Nr. 2"}));
    EXPECT_NEAR(results.at(1).words.at(0).start, -2, 0.05);
    EXPECT_NEAR(results.at(1).words.at(1).end(), 0, 0.05);
    EXPECT_NEAR(heard.at(1), 2.4, 0.15);
}

TEST_F(UtteranceRecognizerTest, add_engineFailsOrHearsNothing_onlyThatUtteranceIsLost) {
    fails = true;
    hear(1, true);
    hear(1, false);
    EXPECT_TRUE(results.empty());
    fails = false;
    hear(1.5, true);
    listener.offerPartial(false);
    says = false;
    hear(1.5, true);
    hear(1, false);
    EXPECT_EQ(texts(), (Texts{"…Nr. 2", ""})) << "what was shown is taken back";
    says = true;
    hear(1, true);
    hear(1, false);
    EXPECT_EQ(texts(), (Texts{"…Nr. 2", "", "Nr. 4"}));
}

TEST_F(UtteranceRecognizerTest, add_samplesThatAreNoNumbers_areNoSpeech) {
    hear(1, true);
    listener.add(std::vector<float>(3 * rate, std::nanf("")));
    EXPECT_EQ(texts(), Texts{"Nr. 1"});
    hear(1, true);
    hear(1, false);
    EXPECT_EQ(texts(), (Texts{"Nr. 1", "Nr. 2"}));
}

} // namespace
} // namespace varnic
