#include "VarnicPlatform/Playback/StretchedSource.h"

#include "VarnicCore/TemporaryFolder.h"
#include "VarnicPlatform/Capture/Tones.h"
#include "VarnicPlatform/Playback/PlaybackPlace.h"

#include <gmock/gmock.h>

namespace varnic {
namespace {

constexpr double tone = 700;

class StretchedSourceTest : public testing::Test {
protected:
    /// Ten seconds of a tone.
    [[nodiscard]] StretchedSource source() const {
        const auto file = folder.path() / "tone.wav";
        Tones::write(file, Tones::sines({tone}, 10));
        return StretchedSource(PlaybackSource({file}));
    }

    /// One channel of what comes at the speed, up to so many frames or the end.
    static std::vector<float> read(StretchedSource& source, double speed, std::size_t most = 10'000'000) {
        std::vector<float> all;
        while (all.size() < most) {
            const auto samples = source.read(speed);
            if (samples.empty()) {
                break;
            }
            for (std::size_t at = 0; at < samples.size(); at += PlaybackQueue::channels) {
                all.push_back(samples[at]);
            }
        }
        return all;
    }

    TemporaryFolder folder;
};

TEST_F(StretchedSourceTest, read_anySpeed_lastsAsLongAndKeepsItsPitch) {
    StretchedSource tones = source();
    for (const double speed : {0.5, 0.75, 1.25, 1.5, 2.0}) {
        tones.seek(0);
        const std::vector<float> all = read(tones, speed);
        EXPECT_NEAR(static_cast<double>(all.size()), 480'000 / speed, 10) << speed;
        for (std::size_t at = 0; at + 24'000 < all.size() - 4'800; at += 24'000) {
            EXPECT_NEAR(Tones::amplitude(std::span(all).subspan(at, 4'800), tone), Tones::loudness, 0.01) << speed;
        }
        EXPECT_TRUE(tones.read(speed).empty());
    }
}

TEST_F(StretchedSourceTest, read_backAtSpeedOne_isExactFromTheNextPlaceOn) {
    StretchedSource tones = source();
    tones.seek(48'000);
    const std::vector<float> exact = read(tones, 1, 9'600);
    tones.seek(0);
    read(tones, 1.5, 48'000);
    tones.seek(48'000);
    EXPECT_EQ(read(tones, 1, 9'600), exact);
}

TEST_F(StretchedSourceTest, read_firstSamplesAtASpeed_goOnWhereTheSourceIs) {
    StretchedSource tones = source();
    tones.seek(0);
    const std::vector<float> exact = read(tones, 1, 48'000);
    tones.seek(0);
    std::vector<float> joined = read(tones, 1, 9'600);
    const std::size_t joint = joined.size();
    const std::vector<float> faster = read(tones, 1.5, 480);
    for (std::size_t i = 0; i < 480; ++i) {
        EXPECT_NEAR(faster[i], exact[joint + i], 1e-5);
    }
}

TEST(PlaybackPlace, at_severalSpeeds_addsThemUp) {
    PlaybackPlace place;
    place.begin(1'000, 50'000);
    place.setSpeed(1'000, 1);
    place.setSpeed(2'000, 2);
    place.setSpeed(2'000, 1.5);
    place.setSpeed(4'000, 0.75);
    EXPECT_EQ(place.start(), 50'000);
    for (const auto& [queue, call] : std::vector<std::pair<std::int64_t, std::int64_t>>{
             {1'000, 50'000}, {1'999, 50'999}, {2'000, 51'000}, {3'000, 52'500}, {4'000, 54'000}, {8'000, 57'000}}) {
        EXPECT_EQ(place.at(queue), call) << queue;
    }
    place.begin(9'000, 0);
    EXPECT_EQ(place.at(9'100), 100);
}

} // namespace
} // namespace varnic
