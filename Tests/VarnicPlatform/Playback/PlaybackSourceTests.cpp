#include "VarnicPlatform/Playback/PlaybackSource.h"

#include "VarnicCore/TemporaryFolder.h"
#include "VarnicPlatform/Capture/Tones.h"

#include <gmock/gmock.h>

#include <fstream>

namespace varnic {
namespace {

class PlaybackSourceTest : public testing::Test {
protected:
    std::filesystem::path file(const std::vector<std::vector<float>>& rows, int rate = 48'000) {
        const auto path = folder.path() / (std::to_string(++files) + ".wav");
        Tones::write(path, rows, rate);
        return path;
    }

    /// So many frames that all have the value.
    static std::vector<float> level(std::size_t frames, float value) { return std::vector<float>(frames, value); }

    /// One channel of all that is still to come.
    static std::vector<float> rest(PlaybackSource& source, std::size_t channel = 0) {
        std::vector<float> all;
        for (auto samples = source.read(); !samples.empty(); samples = source.read()) {
            for (std::size_t at = channel; at < samples.size(); at += PlaybackQueue::channels) {
                all.push_back(samples[at]);
            }
        }
        return all;
    }

    TemporaryFolder folder;
    int files = 0;
};

TEST_F(PlaybackSourceTest, read_twoFilesOfDifferentLength_addUpToTheLonger) {
    PlaybackSource source({file({level(5'000, 0.25F)}), file({level(9'000, 0.125F)})});
    EXPECT_EQ(source.length(), 9'000);
    for (const std::size_t channel : {0U, 1U}) {
        source.seek(0);
        const std::vector<float> all = rest(source, channel);
        ASSERT_EQ(all.size(), 9'000U);
        EXPECT_NEAR(all[0], 0.375, 1e-4);
        EXPECT_NEAR(all[4'999], 0.375, 1e-4);
        EXPECT_NEAR(all[5'000], 0.125, 1e-4);
        EXPECT_NEAR(all[8'999], 0.125, 1e-4);
    }
}

TEST_F(PlaybackSourceTest, seek_anywhere_goesOnAtThatFrame) {
    std::vector<float> ramp;
    for (int i = 0; i < 200'000; ++i) {
        ramp.push_back(static_cast<float>(i) / 400'000);
    }
    PlaybackSource source({file({ramp}), file({level(100'000, 0.0F)})});
    for (const std::int64_t frame : {150'001, 0, 99'999, 199'999, 777}) {
        source.seek(frame);
        const std::vector<float> all = rest(source);
        ASSERT_EQ(static_cast<std::int64_t>(all.size()), 200'000 - frame);
        EXPECT_NEAR(all.front() * 400'000, static_cast<double>(frame), 13); // 16-bit steps
    }
    source.seek(1'000'000);
    EXPECT_TRUE(source.read().empty());
}

TEST_F(PlaybackSourceTest, read_stereo_keepsItsSides) {
    PlaybackSource source({file({level(100, 0.5F), level(100, -0.25F)})});
    EXPECT_NEAR(rest(source, 0).at(50), 0.5, 1e-4);
    source.seek(0);
    EXPECT_NEAR(rest(source, 1).at(50), -0.25, 1e-4);
}

TEST_F(PlaybackSourceTest, read_otherRate_hasTheSameLengthInSeconds) {
    PlaybackSource source({file(Tones::sines({440}, 2, 16'000), 16'000)});
    EXPECT_EQ(source.length(), 96'000);
    const std::vector<float> all = rest(source);
    EXPECT_NEAR(Tones::amplitude(std::span(all).subspan(24'000, 48'000), 440), Tones::loudness, 0.005);
}

TEST_F(PlaybackSourceTest, read_twoLoudVoices_staysBelowFullScaleAndInOrder) {
    std::vector<float> ramp;
    for (int i = 0; i <= 1'000; ++i) {
        ramp.push_back(static_cast<float>(i) / 1'000);
    }
    const auto path = file({ramp});
    PlaybackSource source({path, path});
    const std::vector<float> all = rest(source);
    EXPECT_NEAR(all.at(400), 0.8, 1e-3) << "what is not too loud stays as it is";
    for (std::size_t i = 1; i < all.size(); ++i) {
        EXPECT_GE(all[i], all[i - 1]);
        EXPECT_LE(all[i], 1);
    }
}

TEST_F(PlaybackSourceTest, make_unreadableFiles_areLeftOut) {
    const auto broken = folder.path() / "broken.m4a";
    std::ofstream(broken) << "no sound";
    EXPECT_EQ(PlaybackSource({folder.path() / "gone.m4a", broken}).length(), 0);
    EXPECT_EQ(PlaybackSource({broken, file({level(100, 0.5F)})}).length(), 100);
}

TEST_F(PlaybackSourceTest, read_fileCutWhileItIsOpen_isSilentToItsEnd) {
    const auto path = file({level(480'000, 0.25F)});
    PlaybackSource source({path, file({level(480'000, 0.125F)})});
    std::filesystem::resize_file(path, 48'000);
    source.seek(400'000);
    const std::vector<float> all = rest(source);
    ASSERT_EQ(all.size(), 80'000U);
    EXPECT_NEAR(all[40'000], 0.125, 1e-4);
}

} // namespace
} // namespace varnic
