#include "VarnicCore/Audio/AudioError.h"
#include "VarnicCore/Audio/AudioFiles.h"
#include "VarnicCore/Audio/AudioMix.h"
#include "VarnicCore/Audio/SoundFiles.h"
#include "VarnicCore/Audio/Tones.h"
#include "VarnicCore/Pipeline/Transcriber.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace varnic {
namespace {

TEST(AudioMix, stereo_twoTracks_areLeftAndRightAndAsLongAsTheLonger) {
    const SoundFiles files;
    const auto you = files.tone("you.wav", 2, "-ar 44100 -af \"pan=stereo|c0=c0|c1=c0\"");
    const auto them =
        files.make("them.wav", "-f lavfi -i \"aevalsrc='if(lt(t,2.5),0,0.25*sin(2*PI*200*t))':s=48000:d=3.5\"");
    const auto mix = files.path("mix.m4a");
    AudioMix::stereo(you, them, mix);
    EXPECT_EQ(files.output("ffprobe -v error -show_entries stream=channels,duration -of csv=p=0 mix.m4a"),
              "2,3.500000\n");
    AudioReader reader = AudioReader::open(mix);
    PcmBuffer all{48'000, {{}, {}}};
    PcmBuffer block;
    while (reader.read(block)) {
        for (std::size_t row = 0; row < 2; ++row) {
            all.channels[row].insert(all.channels[row].end(), block.channels[row].begin(), block.channels[row].end());
        }
    }
    ASSERT_EQ(all.frames(), 168'000U);
    EXPECT_TRUE(isToneFrom(all.channels[0], 80'000, 10'000, 48'000));
    EXPECT_NEAR(all.channels[1].at(80'000), 0, 1e-3);
    EXPECT_NEAR(all.channels[0].at(150'000), 0, 1e-3) << "the shorter one is silent for the rest";
    EXPECT_NEAR(all.channels[1].at(150'060), 0.25, 0.02);
}

TEST(AudioMix, stereo_oneOrNoSide) {
    const SoundFiles files;
    const auto them = files.tone("them.wav", 1);
    AudioMix::stereo(std::nullopt, them, files.path("mix.m4a"));
    const std::vector<float> left = readAll(AudioReader::open(files.path("mix.m4a")));
    EXPECT_EQ(left, std::vector<float>(48'000));
    try {
        AudioMix::stereo(std::nullopt, std::nullopt, files.path("mix.m4a"));
        ADD_FAILURE();
    } catch (const TranscriberError& error) {
        EXPECT_EQ(error, TranscriberError::missingFile());
    }
    EXPECT_THROW(AudioMix::stereo(files.path("gone.wav"), them, files.path("mix.m4a")), AudioError);
}

TEST(AudioMix, render_clips_addUpAndAreCutAtTheEnd) {
    const SoundFiles files;
    const auto clip = files.make("clip.wav", "-f lavfi -i \"aevalsrc=0.5:s=16000:d=1\" -c:a pcm_f32le");
    const auto to = files.path("out.caf");
    AudioMix::render({{clip, 0.5, 0.5F}, {clip, 1.0, 1.0F}, {clip, 2.5, 1.0F}}, 2, to, false);
    const std::vector<float> samples = readAll(AudioReader::open(to));
    ASSERT_EQ(samples.size(), 96'000U);
    EXPECT_EQ(samples.at(23'999), 0.0F);
    EXPECT_NEAR(samples.at(36'000), 0.25, 1e-3);
    EXPECT_NEAR(samples.at(60'000), 0.75, 1e-3);
    EXPECT_NEAR(samples.at(90'000), 0.5, 1e-3);
    EXPECT_THROW(AudioMix::render({{files.path("gone.wav"), 0, 1}}, 2, to, false), AudioError);
}

TEST(AudioMix, write_noSamples_leavesAnEmptyFile) {
    const SoundFiles files;
    for (const std::string name : {"a.m4a", "a.caf", "a.wav"}) {
        AudioMix::write({}, files.path(name), name == "a.m4a");
        EXPECT_EQ(AudioFiles::duration(files.path(name)), 0) << name;
        EXPECT_TRUE(std::filesystem::exists(files.path(name)));
    }
}

} // namespace
} // namespace varnic
