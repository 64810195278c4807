#include "VarnicCore/Audio/AudioFiles.h"
#include "VarnicCore/Audio/SoundFiles.h"
#include "VarnicCore/Audio/Tones.h"
#include "VarnicCore/Audio/TrackWriter.h"
#include "VarnicCore/Pipeline/Transcriber.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <limits>
#include <string>
#include <vector>

namespace varnic {
namespace {

constexpr AudioFormat mono = TrackFormat::processing;

void appendTone(TrackWriter& writer, AudioFormat format, std::size_t frames, std::size_t piece) {
    for (std::size_t at = 0; at < frames; at += piece) {
        writer.append(toneBuffer(format, at, std::min(piece, frames - at)), std::nullopt);
    }
}

TEST(TrackWriter, close_compressedOfAnyLength_readsBackExactly) {
    const SoundFiles files;
    for (const std::size_t frames : {1U, 1023U, 1024U, 1025U, 47'999U, 48'000U, 123'457U, 480'000U}) {
        SCOPED_TRACE(frames);
        const auto file = files.path("you.m4a");
        TrackWriter writer(file, Speaker::you, true);
        appendTone(writer, mono, frames, 1000);
        writer.close();
        EXPECT_EQ(writer.framesWritten(), static_cast<std::int64_t>(frames));
        EXPECT_EQ(audioLength(file).frames, static_cast<std::int64_t>(frames));
        const std::vector<float> samples = readAll(AudioReader::open(file));
        ASSERT_EQ(samples.size(), frames);
        if (frames > 100'000) {
            EXPECT_TRUE(isToneFrom(samples, 2000, 1000, 48'000));
            EXPECT_TRUE(isToneFrom(samples, frames - 2000, 1000, 48'000)) << "drifted";
        }
    }
}

TEST(TrackWriter, close_compressed_isAnOrdinaryFileToOtherPrograms) {
    const SoundFiles files;
    {
        TrackWriter writer(files.path("you.m4a"), Speaker::you, true);
        writer.append(toneBuffer(mono, 0, 10'000), 0.0);
        writer.append(toneBuffer(mono, 0, 10'000, 0.1F), 60.0);
        writer.pad(120);
    }
    EXPECT_EQ(files.output("ffprobe -v error -show_entries "
                           "stream=codec_name,profile,sample_rate,channels,duration -of csv=p=0 you.m4a"),
              "aac,LC,48000,1,120.000000\n");
    // Decoded whole, and from a place that was sought: the second tone is where it was put.
    files.run("ffmpeg -v error -xerror -i you.m4a -f f32le whole.raw");
    EXPECT_EQ(std::filesystem::file_size(files.path("whole.raw")) / sizeof(float), 120U * 48'000);
    const std::string whole = files.output("ffmpeg -v error -ss 59 -t 2 -i you.m4a -f f32le - | "
                                           "ffmpeg -v info -f f32le -ar 48000 -ac 1 -i - "
                                           "-af silencedetect=n=-50dB:d=0.5 -f null - 2>&1 | grep -o 'silence_end: "
                                           "[0-9.]*'");
    EXPECT_NEAR(std::stod(whole.substr(whole.find(' '))), 1.0, 0.005) << whole;
}

TEST(TrackWriter, close_plain_isFloatOfTheExactLength) {
    const SoundFiles files;
    for (const std::string name : {"you.caf", "you.wav"}) {
        SCOPED_TRACE(name);
        {
            TrackWriter writer(files.path(name), Speaker::you, false);
            appendTone(writer, mono, 123'457, 4800);
            EXPECT_EQ(AudioFiles::duration(files.path(name)), 123'457.0 / 48'000) << "while it grows";
        }
        EXPECT_EQ(files.output("ffprobe -v error -show_entries stream=codec_name,sample_rate,channels,duration_ts "
                               "-of csv=p=0 " +
                               name),
                  "pcm_f32le,48000,1,123457\n");
        EXPECT_EQ(readAll(AudioReader::open(files.path(name))), toneBuffer(mono, 0, 123'457).channels[0]);
    }
}

struct Gap {
    std::optional<double> at;
    std::int64_t silence;
};

TEST(TrackWriter, append_stamped_fillsGapsOfMoreThanATwentieth) {
    const SoundFiles files;
    for (const auto& [at, silence] : std::vector<Gap>{{1.04, 0},
                                                      {1.06, 2880},
                                                      {1.5, 24'000},
                                                      {std::nullopt, 0},
                                                      {0.5, 0},
                                                      {1.0, 0},
                                                      {std::numeric_limits<double>::quiet_NaN(), 0}}) {
        TrackWriter writer(files.path("you.caf"), Speaker::you, false);
        writer.append(toneBuffer(mono, 0, 48'000), 0.0);
        writer.append(toneBuffer(mono, 0, 4800), at);
        EXPECT_NEAR(static_cast<double>(writer.framesWritten() - 52'800), static_cast<double>(silence), 1)
            << at.value_or(-1);
    }
}

TEST(TrackWriter, pad_fromAnywhere_endsAtTheSameFrame) {
    const TemporaryFolder folder;
    for (std::size_t frames = 1; frames < 40'000; frames += 1'237) {
        TrackWriter writer(folder.path() / "track.wav", Speaker::you, false);
        writer.append({48'000, {std::vector<float>(frames)}}, std::nullopt);
        writer.pad(12.913562);
        EXPECT_EQ(writer.framesWritten(), 619'851) << frames;
    }
}

TEST(TrackWriter, pad_andSilence_neverCut) {
    const SoundFiles files;
    TrackWriter writer(files.path("you.caf"), Speaker::you, false);
    writer.append(toneBuffer(mono, 0, 48'000), std::nullopt);
    writer.pad(0.5);
    writer.writeSilence(0);
    writer.writeSilence(-3);
    writer.append({48'000, {{}}}, 5.0);
    EXPECT_EQ(writer.framesWritten(), 48'000);
    writer.pad(2.5);
    EXPECT_EQ(writer.seconds(), 2.5);
    writer.close();
    const std::vector<float> samples = readAll(AudioReader::open(writer.url()));
    EXPECT_EQ(std::vector(samples.begin() + 48'000, samples.end()), std::vector<float>(72'000));
}

TEST(TrackWriter, append_levels_lastAndHighest) {
    const SoundFiles files;
    TrackWriter writer(files.path("you.caf"), Speaker::you, false);
    EXPECT_EQ(writer.level(), 0);
    const auto constant = [](float value) { return PcmBuffer{48'000, {std::vector<float>(480, value)}}; };
    writer.append(constant(0.0316228F), std::nullopt); // -30 dB
    EXPECT_NEAR(writer.level(), 0.5, 1e-4);
    writer.append(constant(1), std::nullopt);
    EXPECT_EQ(writer.level(), 1);
    writer.append(constant(0), std::nullopt);
    EXPECT_EQ(writer.level(), 0);
    EXPECT_EQ(writer.peak(), 1);
}

TEST(TrackWriter, append_sourceThatChangesItsForm_keepsTimeAndTone) {
    const SoundFiles files;
    const std::vector<AudioFormat> forms{{44'100, 2}, {48'000, 6}, {16'000, 1}, {48'000, 1}, {96'000, 2}, {44'100, 6}};
    TrackWriter writer(files.path("them.m4a"), Speaker::them, true);
    for (const AudioFormat form : forms) {
        // Two seconds in pieces whose lengths don't divide evenly; the tone is at its peak at each whole second.
        const auto frames = 2 * static_cast<std::size_t>(form.rate);
        appendTone(writer, form, frames, 1021);
    }
    writer.close();
    EXPECT_EQ(writer.framesWritten(), 12 * 48'000);
    const std::vector<float> samples = readAll(AudioReader::open(writer.url()));
    ASSERT_EQ(samples.size(), 12U * 48'000);
    for (std::size_t form = 0; form < forms.size(); ++form) {
        EXPECT_TRUE(isToneFrom(samples, form * 96'000 + 40'000, 10'000, 48'000)) << form;
    }
}

TEST(TrackWriter, append_minutesOfAnOddRate_doNotDrift) {
    const SoundFiles files;
    TrackWriter writer(files.path("you.caf"), Speaker::you, false);
    const PcmBuffer piece = toneBuffer({44'100, 1}, 0, 441'000);
    for (int count = 0; count < 30; ++count) {
        writer.append(piece, count * 10.0);
    }
    EXPECT_NEAR(writer.seconds(), 300, 0.001) << "what the converter holds back";
    writer.pad(300);
    EXPECT_EQ(writer.framesWritten(), 300 * 48'000);
}

TEST(TrackWriter, append_numbersThatAreNone_areSilence) {
    const SoundFiles files;
    const float none = std::numeric_limits<float>::quiet_NaN();
    const float endless = std::numeric_limits<float>::infinity();
    TrackWriter writer(files.path("you.m4a"), Speaker::you, true);
    writer.append({48'000, {std::vector<float>(48'000, none)}}, 0.0);
    writer.append({44'100, {std::vector<float>(44'100, endless), std::vector<float>(44'100, 1e30F)}}, 1.0);
    EXPECT_GE(writer.level(), 0);
    writer.append(toneBuffer(mono, 0, 48'000), 2.0);
    writer.close();
    EXPECT_TRUE(isToneFrom(readAll(AudioReader::open(writer.url())), 110'000, 20'000, 48'000));
}

TEST(TrackWriter, append_impossibleForm_throwsAndTheTrackGoesOn) {
    const SoundFiles files;
    TrackWriter writer(files.path("you.m4a"), Speaker::you, true);
    writer.append(toneBuffer({44'100, 2}, 0, 44'100), 0.0);
    const std::vector<std::pair<PcmBuffer, std::string>> impossible{
        {{0, {std::vector<float>(10)}}, "unsupported audio format 0 Hz, 1 channel"},
        {{48'000, std::vector(65, std::vector<float>(10))}, "unsupported audio format 48000 Hz, 65 channels"}};
    for (const auto& [buffer, message] : impossible) {
        try {
            writer.append(buffer, std::nullopt);
            ADD_FAILURE() << message;
        } catch (const TranscriberError& error) {
            EXPECT_EQ(error, TranscriberError::failed(message));
        }
    }
    writer.append(toneBuffer({44'100, 2}, 0, 44'100), 1.0);
    writer.close();
    EXPECT_EQ(audioLength(writer.url()).frames, 96'000);
}

TEST(TrackWriter, create_overAnotherFile_replacesItForTheOwnerOnly) {
    const SoundFiles files;
    const auto file = files.write("you.m4a", std::string(100'000, 'x'));
    TrackWriter(file, Speaker::you, true).writeSilence(1);
    EXPECT_EQ(audioLength(file).frames, 48'000);
    struct stat status{};
    ASSERT_EQ(::stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

} // namespace
} // namespace varnic
