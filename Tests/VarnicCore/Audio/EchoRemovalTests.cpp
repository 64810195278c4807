#include "VarnicCore/Audio/EchoFreeReader.h"

#include "VarnicCore/Audio/AudioMix.h"
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

/// Sound that comes and goes four times a second like syllables do, another one for each seed.
std::vector<float> babble(double seconds, unsigned seed, int rate) {
    std::mt19937 random(seed);
    std::normal_distribution<float> noise(0, 0.1F);
    std::vector<float> samples(static_cast<std::size_t>(seconds * rate));
    float low = 0;
    const float smoothing = rate == 48'000 ? 0.97F : 0.9F; // little of it is above what the engine hears
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double phase = std::fmod(4.0 * static_cast<double>(i) / rate, 1.0);
        low = smoothing * low + (1 - smoothing) * 5 * noise(random);
        samples[i] = phase < 0.75 ? low : 0.02F * low;
    }
    return samples;
}

/// Adds what a microphone hears of a sound in a room: so much down, late, and with half a dozen reflections.
void overhear(std::vector<float>& heard, const std::vector<float>& sound, double decibels, double late, int rate) {
    for (int reflection = 0; reflection < 7; ++reflection) {
        const auto gain = static_cast<float>(std::pow(10, decibels / 20) * std::pow(-0.5, reflection));
        const auto delay = static_cast<std::size_t>((late + 0.011 * reflection) * rate);
        for (std::size_t i = delay; i < std::min(heard.size(), sound.size() + delay); ++i) {
            heard[i] += gain * sound[i - delay];
        }
    }
}

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

TEST(EchoRemovalTests, clean_soundThatIsNoNumber_isForgotten) {
    const Call call(-12, 0.05, EchoRemoval::rate);
    EchoRemoval removal;
    std::vector<float> cleaned;
    for (std::size_t at = 0; at + EchoRemoval::block <= call.them.size(); at += EchoRemoval::block) {
        std::array<float, EchoRemoval::block> them{};
        std::array<float, EchoRemoval::block> you{};
        std::copy_n(call.them.begin() + static_cast<std::ptrdiff_t>(at), them.size(), them.begin());
        std::copy_n(call.microphone.begin() + static_cast<std::ptrdiff_t>(at), you.size(), you.begin());
        if (at == 20 * EchoRemoval::block) {
            them[3] = std::numeric_limits<float>::quiet_NaN();
            you[5] = std::numeric_limits<float>::infinity();
        }
        const auto block = removal.clean(them, you);
        cleaned.insert(cleaned.end(), block.begin(), block.end());
    }
    EXPECT_LT(decibels(cleaned, 13, 15.9, EchoRemoval::rate),
              decibels(call.microphone, 13, 15.9, EchoRemoval::rate) - 15);
}

} // namespace
} // namespace varnic
