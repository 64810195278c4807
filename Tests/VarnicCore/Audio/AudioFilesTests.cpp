#include "VarnicCore/Audio/AudioFiles.h"
#include "VarnicCore/Audio/Resampler.h"
#include "VarnicCore/Audio/SoundFiles.h"
#include "VarnicCore/Pipeline/Transcriber.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

namespace varnic {
namespace {

TEST(AudioFiles, frameLevels_stepsOfLevel_areDecibelsAFrame) {
    const SoundFiles files;
    // A second of silence, a second at -20 dB in one of two channels, and a short last frame at full scale.
    const auto file =
        files.make("a.wav", "-f lavfi -i \"aevalsrc='if(lt(t,1),0,if(lt(t,2),0.1,1))|if(lt(t,2),0,1)':s=8000:d=2.25\" "
                            "-c:a pcm_f32le");
    const std::vector<float> levels = AudioFiles::frameLevels(file, 0.5);
    ASSERT_EQ(levels.size(), 5U);
    EXPECT_EQ(levels[0], -120.0F);
    EXPECT_NEAR(levels[2], -23.0103, 1e-4) << "the mean of squares is over both channels";
    EXPECT_NEAR(levels[4], 0, 1e-4);
}

TEST(AudioFiles, envelope_levels_areMappedAndLimited) {
    const SoundFiles files;
    const auto file =
        files.make("a.wav", "-f lavfi -i \"aevalsrc='if(lt(t,1),0,if(lt(t,2),pow(10,-1.5),1))':s=8000:d=3\" "
                            "-c:a pcm_f32le");
    const std::vector<float> envelope = AudioFiles::envelope(file, 1);
    ASSERT_EQ(envelope.size(), 3U);
    EXPECT_EQ(envelope[0], 0.0F);
    EXPECT_NEAR(envelope[1], 0.5, 1e-4);
    EXPECT_EQ(envelope[2], 1.0F);
}

TEST(Resampler, convert_otherForm_keepsSecondsAndMixesDown) {
    PcmBuffer stereo{44'100, {std::vector<float>(44'100, 0.5F), std::vector<float>(44'100, 0.1F)}};
    const Resampler resampler{TrackFormat::processing};
    const PcmBuffer mono = resampler.convert(stereo);
    EXPECT_EQ(mono.format(), TrackFormat::processing);
    ASSERT_EQ(mono.frames(), 48'000U);
    EXPECT_NEAR(mono.channels[0][24'000], 0.3, 1e-4);
    EXPECT_EQ(resampler.convert(mono), mono) << "already in the target's form";
}

TEST(Resampler, convert_impossibleForm_throws) {
    const PcmBuffer none{0, {std::vector<float>(10)}};
    EXPECT_THROW(static_cast<void>(Resampler{TrackFormat::processing}.convert(none)), TranscriberError);
}

} // namespace
} // namespace varnic
