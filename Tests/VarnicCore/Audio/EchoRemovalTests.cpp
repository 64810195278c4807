#include "VarnicCore/Audio/EchoFreeReader.h"

#include "VarnicCore/Audio/AudioMix.h"
#include "VarnicCore/Audio/Room.h"
#include "VarnicCore/TemporaryFolder.h"
#include "VarnicCore/Transcript/OverheardLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <string>

namespace varnic {
namespace {

constexpr int trackRate = 48'000;

double decibels(const std::vector<float>& samples, double from, double to, int rate) {
    const auto first = static_cast<std::ptrdiff_t>(from * rate);
    const auto last = std::min(static_cast<std::ptrdiff_t>(to * rate), std::ssize(samples));
    const double energy = EchoFilter::energy({samples.begin() + first, samples.begin() + last});
    return 10 * std::log10(energy / static_cast<double>(last - first) + 1e-12);
}

/// A call: they speak from second 1 to 16, you from 8 to 12 over them and from 18 to 20 alone.
struct Call {
    std::vector<float> them;
    std::vector<float> yours;
    std::vector<float> microphone;

    Call(double down, double late, int rate) : them(babble(16, 1, rate)) {
        std::fill_n(them.begin(), rate, 0.0F);
        them.resize(20 * static_cast<std::size_t>(rate));
        yours.resize(them.size());
        const std::vector<float> voice = babble(20, 2, rate);
        for (const auto& [from, to] : {std::pair{8, 12}, std::pair{18, 20}}) {
            std::copy(voice.begin() + from * rate, voice.begin() + to * rate, yours.begin() + from * rate);
        }
        microphone = yours;
        overhear(microphone, them, down, late, rate);
    }
};

struct Place {
    double down;
    double late;
};

class EchoPlaceTests : public testing::TestWithParam<Place> {
protected:
    EchoPlaceTests() {
        AudioMix::write(call.microphone, you, false);
        AudioMix::write(call.them, them, false);
    }

    TemporaryFolder folder;
    Call call{GetParam().down, GetParam().late, trackRate};
    std::filesystem::path you = folder.path() / "you.caf";
    std::filesystem::path them = folder.path() / "them.caf";
};

TEST_P(EchoPlaceTests, read_callWithEcho_keepsYourWordsAndNothingElse) {
    EchoFreeReader reader(you, them, EchoFreeReader::learn(you, them, [] {}));
    std::vector<float> cleaned;
    for (PcmBuffer buffer; reader.read(buffer);) {
        cleaned.insert(cleaned.end(), buffer.channels.front().begin(), buffer.channels.front().end());
    }

    constexpr int rate = EchoRemoval::rate;
    EXPECT_EQ(cleaned.size(), std::size_t{20} * rate);
    const double echo = decibels(call.microphone, 1, 7, trackRate);
    EXPECT_LT(decibels(cleaned, 0, 0.9, rate), -100);
    EXPECT_LT(decibels(cleaned, 1, 7, rate), echo - 20) << "also at the beginning";
    EXPECT_LT(decibels(cleaned, 13, 17, rate), echo - 20);
    for (double at = 8; at < 12; at += 0.25) {
        EXPECT_NEAR(decibels(cleaned, at, at + 0.15, rate), decibels(call.yours, at, at + 0.15, trackRate), 2) << at;
    }
    EXPECT_NEAR(decibels(cleaned, 18, 20, rate), decibels(call.yours, 18, 20, trackRate), 1);
}

TEST_P(EchoPlaceTests, remove_linesOfARunningCall_takesThoseThatAreEcho) {
    const std::vector<Segment> transcript{Segment(Speaker::them, 1, 6, "What they say"),
                                          Segment(Speaker::you, 1, 5.9, "Was day stay"),
                                          Segment(Speaker::them, 6, 16, "and say"),
                                          Segment(Speaker::you, 8.1, 11.9, "what you say over it"),
                                          Segment(Speaker::you, 13, 15, "an stay"),
                                          Segment(Speaker::you, 18, 20, "what you say then"),
                                          Segment(Speaker::them, 17.5, 20, "Nothing, really"),
                                          Segment(Speaker::you, 40, 41, "behind the end")};
    std::vector<std::string> left;
    for (const Segment& line : OverheardLines::remove(transcript, you, them, [] {})) {
        left.push_back(line.text);
    }
    EXPECT_THAT(left, testing::ElementsAre("What they say", "and say", "what you say over it", "what you say then",
                                           "Nothing, really", "behind the end"));
}

INSTANTIATE_TEST_SUITE_P(Echoes, EchoPlaceTests,
                         testing::Values(Place{-6, 0.01}, Place{-12, 0.03}, Place{-12, 0.3}, Place{-20, 0.1}));

TEST(OverheardLinesTests, remove_linesInANoisyRoom_takesThoseInTheirWords) {
    Call call(-12, 0.03, trackRate);
    // A fifth of the echo's energy, as far as the engine hears it, stays with the noise.
    std::normal_distribution<float> noise(
        0, std::pow(10.0F, static_cast<float>(decibels(call.microphone, 1, 7, trackRate)) / 20) * 0.87F);
    std::mt19937 random(3);
    std::ranges::for_each(call.microphone, [&](float& sample) { sample += noise(random); });
    const TemporaryFolder folder;
    AudioMix::write(call.microphone, folder.path() / "you.caf", false);
    AudioMix::write(call.them, folder.path() / "them.caf", false);
    std::vector<std::string> left;
    for (const Segment& line : OverheardLines::remove(
             {Segment(Speaker::them, 1, 16, "And thanks for making the time, the week is full"),
              Segment(Speaker::you, 1.5, 4, "And the time"), Segment(Speaker::you, 1.6, 4, "The time"),
              Segment(Speaker::you, 1.7, 4, "And thanks full"), Segment(Speaker::you, 4, 6, "And another time"),
              Segment(Speaker::you, 8.1, 11.9, "Thanks for the time")},
             folder.path() / "you.caf", folder.path() / "them.caf", [] {})) {
        left.push_back(line.text);
    }
    EXPECT_THAT(left, testing::ElementsAre("And thanks for making the time, the week is full", "The time",
                                           "And thanks full", "And another time", "Thanks for the time"));
}

/// What is left of a call's sound, all of which is there already.
std::vector<float> cleaned(EchoRemoval& removal, const std::vector<float>& them, const std::vector<float>& you) {
    std::vector<float> cleaned;
    for (std::size_t at = 0; at + EchoRemoval::block <= them.size(); at += EchoRemoval::block) {
        const auto block = removal.clean(std::span(them).subspan(at).first<EchoRemoval::block>(),
                                         std::span(you).subspan(at).first<EchoRemoval::block>());
        cleaned.insert(cleaned.end(), block.begin(), block.end());
    }
    return cleaned;
}

TEST(EchoRemovalTests, clean_pathChangesInMidCall_isLearntAgain) {
    constexpr int rate = EchoRemoval::rate;
    constexpr double change = 15;
    const std::vector<float> them = babble(40, 1, rate);

    struct Path {
        double down;
        double late;
    };

    // A quantum more, as when a stream is linked anew; less of it; louder; another room; none before.
    for (const auto& [before, after] : {std::pair<Path, Path>{{-12, 0.03}, {-12, 0.0513}},
                                        {{-12, 0.1}, {-12, 0.0787}},
                                        {{-20, 0.03}, {-6, 0.03}},
                                        {{-12, 0.03}, {-9, 0.2}},
                                        {{-90, 0.03}, {-12, 0.05}}}) {
        std::vector<float> first(static_cast<std::size_t>(change * rate));
        std::vector<float> microphone(them.size());
        overhear(first, them, before.down, before.late, rate);
        overhear(microphone, them, after.down, after.late, rate);
        std::ranges::copy(first, microphone.begin());
        EchoRemoval removal;
        const std::vector<float> left = cleaned(removal, them, microphone);
        EXPECT_LT(decibels(left, change + 6, 24.9, rate), decibels(microphone, change + 6, 24.9, rate) - 20)
            << after.down << " dB, " << after.late << " s";
        EXPECT_TRUE(removal.hasEcho());
    }
}

TEST(EchoRemovalTests, hasEcho_bothSpeakWithHeadphonesOn_hasNone) {
    EchoRemoval removal;
    cleaned(removal, babble(30, 1, EchoRemoval::rate), babble(30, 2, EchoRemoval::rate));
    EXPECT_GT(removal.learnt(), 10);
    EXPECT_FALSE(removal.hasEcho());
}

TEST(EchoRemovalTests, clean_soundThatIsNoNumber_isForgotten) {
    Call call(-12, 0.05, EchoRemoval::rate);
    constexpr std::size_t at = 20 * EchoRemoval::block;
    call.them[at + 3] = std::numeric_limits<float>::quiet_NaN();
    call.microphone[at + 5] = std::numeric_limits<float>::infinity();
    EchoRemoval removal;
    const std::vector<float> left = cleaned(removal, call.them, call.microphone);
    EXPECT_LT(decibels(left, 13, 15.9, EchoRemoval::rate), decibels(call.microphone, 13, 15.9, EchoRemoval::rate) - 15);
    EXPECT_TRUE(
        std::all_of(left.begin() + EchoRemoval::rate, left.end(), [](float sample) { return std::isfinite(sample); }));
}

} // namespace
} // namespace varnic
