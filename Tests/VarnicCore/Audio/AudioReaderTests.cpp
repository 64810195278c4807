#include "VarnicCore/Audio/AudioError.h"
#include "VarnicCore/Audio/AudioReader.h"
#include "VarnicCore/Audio/SoundFiles.h"
#include "VarnicCore/Audio/Tones.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace varnic {
namespace {

struct Encoding {
    std::string name;
    std::string arguments;
};

const std::string fragments = "-f mp4 -c:a aac -movflags +frag_keyframe+delay_moov+empty_moov -frag_duration 1000000";

/// Those whose places and lengths are told to the sample.
const std::vector<Encoding> exact{{"a.m4a", "-c:a aac -b:a 128k"},
                                  {"fragments.m4a", fragments},
                                  {"a.mp3", "-c:a libmp3lame -b:a 128k"},
                                  {"a.ogg", "-c:a libvorbis -q:a 6"},
                                  {"a.opus", "-c:a libopus -b:a 96k"},
                                  {"a.flac", ""},
                                  {"a.wav", ""},
                                  {"a.caf", ""},
                                  {"a.aiff", ""}};

TEST(AudioReader, read_encodedTone_beginsAtSampleZeroAndKeepsItsLength) {
    const SoundFiles files;
    std::vector<Encoding> encodings = exact;
    encodings.push_back({"a.webm", "-c:a libopus -b:a 96k"});
    for (const auto& [name, arguments] : encodings) {
        SCOPED_TRACE(name);
        const auto file = files.tone(name, 10, arguments);
        const std::vector<float> samples = readAll(AudioReader::open(file));
        ASSERT_EQ(samples.size(), 480'000U);
        EXPECT_TRUE(isToneFrom(samples, 2000, 1000, 48'000));
        EXPECT_TRUE(isToneFrom(samples, 470'000, 1000, 48'000)) << "drifted";
        EXPECT_EQ(audioLength(file).frames, 480'000);
        EXPECT_EQ(audioLength(file).rate, 48'000);
    }
}

/// How many samples from `place` on differ audibly from those that reading from the beginning gives, or are missing.
long differences(AudioReader& reader, const std::vector<float>& whole, std::size_t place, float tolerance = 0.01F) {
    reader.seek(static_cast<std::int64_t>(place));
    std::vector<float> samples;
    PcmBuffer block;
    while (samples.size() < 20'000 && reader.read(block)) {
        samples.insert(samples.end(), block.channels.front().begin(), block.channels.front().end());
    }
    long different = std::abs(std::min<long>(20'000, static_cast<long>(whole.size() - place)) -
                              std::min<long>(20'000, static_cast<long>(samples.size())));
    for (std::size_t i = 0; i < samples.size() && place + i < whole.size(); ++i) {
        different += std::abs(samples[i] - whole[place + i]) > tolerance ? 1 : 0;
    }
    return different;
}

/// Rises to 1 kHz all the time, so that no place sounds like another.
const std::string sweep = "-f lavfi -i \"aevalsrc=0.5*sin(2*PI*(200*t+10*t*t)):s=48000:d=40\" ";

TEST(AudioReader, seek_anyPlaceOfAnEncodedSweep_goesOnExactlyThere) {
    const SoundFiles files;
    std::vector<Encoding> encodings = exact;
    encodings.push_back({"a.aac", "-c:a aac -b:a 128k"});
    encodings.push_back({"variable.mp3", "-c:a libmp3lame -q:a 4"});
    for (const auto& [name, arguments] : encodings) {
        SCOPED_TRACE(name);
        const auto file = files.make(name, sweep + arguments);
        const std::vector<float> whole = readAll(AudioReader::openMono(file, 48'000));
        AudioReader reader = AudioReader::openMono(file, 48'000);
        for (const std::size_t place : {1'500'001U, 5U, 60'000U, 1'919'000U, 700'000U, 0U, 47'999U}) {
            EXPECT_EQ(differences(reader, whole, place), 0) << place;
        }
        EXPECT_EQ(reader.length(), static_cast<std::int64_t>(whole.size()));
        EXPECT_EQ(differences(reader, whole, whole.size() - 1), 0);
        PcmBuffer block;
        reader.seek(static_cast<std::int64_t>(whole.size()) + 48'000);
        EXPECT_FALSE(reader.read(block)) << "behind the end";
    }
}

/// Bytes that this process has read by now.
long long bytesRead() {
    std::ifstream io("/proc/self/io");
    std::string name;
    long long bytes = 0;
    io >> name >> bytes;
    return bytes;
}

TEST(AudioReader, seek_deepInThreeHours_readsItsSurroundingsAlone) {
    const SoundFiles files;
    // Ten seconds again and again, at packets' borders: each round decodes alike, but for the first.
    constexpr std::size_t round = 469 * std::size_t{1024};
    files.make("once.aac", sweep + "-af atrim=end_sample=479232 -c:a aac -b:a 64k -frames:a 469");
    files.run("for i in $(seq 1080); do cat once.aac; done > hours.aac");
    for (const auto& [name, arguments] : std::vector<Encoding>{{"hours.m4a", ""}, {"fragments.m4a", fragments}}) {
        SCOPED_TRACE(name);
        const auto file = files.make(name, "-i hours.aac " + arguments + " -c copy -bsf:a aac_adtstoasc");
        AudioReader reader = AudioReader::open(file);
        reader.seek(round);
        std::vector<float> second;
        PcmBuffer block;
        while (second.size() < round && reader.read(block)) {
            second.insert(second.end(), block.channels.front().begin(), block.channels.front().end());
        }
        const auto length = static_cast<double>(reader.length());
        EXPECT_NEAR(length, 1080.0 * round, 1024);
        const long long before = bytesRead();
        for (const std::size_t place : {1000U, 3U, 500U}) {
            reader.seek(static_cast<std::int64_t>(place * round + 12'345));
            ASSERT_TRUE(reader.read(block));
            for (std::size_t i = 0; i < block.frames(); ++i) {
                ASSERT_NEAR(block.channels.front()[i], second[12'345 + i], 1e-3) << place << ", " << i;
            }
        }
        const long long read = bytesRead() - before;
        EXPECT_GT(read, 0);
        EXPECT_LT(read, static_cast<long long>(std::filesystem::file_size(file) / 100));
    }
}

TEST(AudioReader, seek_atAnotherRate_isExactToHalfAFrame) {
    const SoundFiles files;
    constexpr auto steepestHalfFrame = static_cast<float>(0.5 * M_PI * 1000 / 48'000);
    for (const std::string name : {"a.wav", "a.m4a"}) {
        SCOPED_TRACE(name);
        const auto file = files.make(name, sweep + "-ar 44100");
        const std::vector<float> whole = readAll(AudioReader::openMono(file, 48'000));
        AudioReader reader = AudioReader::openMono(file, 48'000);
        EXPECT_EQ(reader.length(), static_cast<std::int64_t>(whole.size()));
        for (const std::size_t place : {1'500'001U, 700'000U, 60'000U, 5U}) {
            EXPECT_EQ(differences(reader, whole, place, steepestHalfFrame), 0) << place;
        }
    }
}

TEST(AudioReader, openUpToStereo_moreOrFewerChannels_keepsOneAndTwo) {
    const SoundFiles files;
    for (const auto& [channels, expected] : {std::pair(1, 1), {2, 2}, {6, 2}}) {
        const auto file = files.tone("a.wav", 1, "-ac " + std::to_string(channels));
        EXPECT_EQ(AudioReader::openUpToStereo(file, 16'000).format(), (AudioFormat{16'000, expected}));
    }
}

TEST(AudioReader, seek_coarseTimeStamps_isAsExactAsThey) {
    const SoundFiles files;
    const auto file = files.tone("a.webm", 30, "-c:a libopus");
    AudioReader reader = AudioReader::open(file);
    constexpr double millisecond = 48;
    EXPECT_NEAR(static_cast<double>(reader.length()), 30 * 48'000, millisecond);
    reader.seek(29 * 48'000);
    EXPECT_NEAR(static_cast<double>(readAll(std::move(reader)).size()), 48'000, millisecond);
}

TEST(AudioReader, openMono_otherRate_keepsLengthAndPlace) {
    const SoundFiles files;
    const auto file = files.tone("a.wav", 3, "-ar 44100 -af \"pan=stereo|c0=c0|c1=c0\" -c:a pcm_f32le");
    for (const int rate : {16'000, 44'100, 48'000}) {
        AudioReader reader = AudioReader::openMono(file, rate);
        EXPECT_EQ(reader.format(), (AudioFormat{rate, 1}));
        const std::vector<float> samples = readAll(std::move(reader));
        ASSERT_EQ(samples.size(), static_cast<std::size_t>(3 * rate)) << rate;
        EXPECT_TRUE(isToneFrom(samples, static_cast<std::size_t>(rate), 1000, rate)) << rate;
    }
}

TEST(AudioReader, openMono_manyChannels_takesTheirMean) {
    const SoundFiles files;
    const auto file =
        files.make("a.wav", "-f lavfi -i \"aevalsrc=0.8|0|-0.4|0|0|0|0|0|0|0|0|0|0|0|0|0:s=16000:d=1:c=hexadecagonal\" "
                            "-c:a pcm_f32le");
    EXPECT_EQ(AudioReader::open(file).format(), (AudioFormat{16'000, 16}));
    const std::vector<float> samples = readAll(AudioReader::openMono(file, 16'000));
    ASSERT_EQ(samples.size(), 16'000U);
    EXPECT_NEAR(samples[8000], 0.4 / 16, 1e-5);
}

TEST(AudioReader, read_videoWhoseSoundStartsLater_keepsThePlaceOfTheSound) {
    const SoundFiles files;
    files.tone("tone.wav", 2);
    for (const std::string name : {"a.mp4", "a.mkv"}) {
        SCOPED_TRACE(name);
        const auto file = files.make(name, "-f lavfi -i testsrc=d=2:s=64x64:r=10 -itsoffset 0.5 -i tone.wav -c:a aac");
        const std::vector<float> samples = readAll(AudioReader::open(file));
        EXPECT_NEAR(static_cast<double>(samples.size()) / 48'000, 2.5, 0.03);
        EXPECT_EQ(samples.at(12'000), 0.0F);
        EXPECT_GT(std::abs(samples.at(36'000)) + std::abs(samples.at(36'012)), 0.3F);
    }
}

/// Zeroes a quarter of the packets' bytes without touching the file's head or tail.
std::string damaged(std::string bytes) {
    for (std::size_t index = bytes.size() * 2 / 5; index < bytes.size() / 2; ++index) {
        bytes[index] = '\xA5';
    }
    return bytes;
}

TEST(AudioReader, read_damagedInTheMiddle_goesOnInTime) {
    const SoundFiles files;
    for (const auto& [name, arguments] : std::vector<Encoding>{{"a.m4a", "-c:a aac"}, {"a.opus", "-c:a libopus"}}) {
        SCOPED_TRACE(name);
        const auto file = files.tone(name, 10, arguments);
        const auto broken = files.write("broken-" + name, damaged(SoundFiles::bytesOf(file)));
        const std::vector<float> samples = readAll(AudioReader::open(broken));
        ASSERT_EQ(samples.size(), 480'000U);
        EXPECT_TRUE(isToneFrom(samples, 400'000, 1000, 48'000));
    }
}

TEST(AudioReader, read_truncated_givesWhatIsThere) {
    const SoundFiles files;
    for (const auto& [name, arguments] :
         std::vector<Encoding>{{"fragments.m4a", fragments}, {"a.mp3", ""}, {"a.wav", ""}, {"a.ogg", ""}}) {
        SCOPED_TRACE(name);
        const std::string bytes = SoundFiles::bytesOf(files.tone(name, 10, arguments));
        const auto cut = files.write("cut-" + name, bytes.substr(0, bytes.size() * 6 / 10));
        const std::vector<float> samples = readAll(AudioReader::open(cut));
        EXPECT_GT(samples.size(), 200'000U);
        EXPECT_LT(samples.size(), 330'000U);
        EXPECT_TRUE(isToneFrom(samples, 100'000, 1000, 48'000));
        EXPECT_NEAR(static_cast<double>(audioLength(cut).frames), static_cast<double>(samples.size()), 1);
    }
}

struct Refusal {
    std::string name;
    AudioError::Kind kind;
    std::string sentence;
};

TEST(AudioReader, open_notReadable_saysSoInOneSentence) {
    const SoundFiles files;
    files.tone("tone.wav", 1);
    files.write("notes.txt", "Nothing here but words, and more of them than a guess would need.\n");
    files.write("empty.m4a", "");
    files.write("list.m3u8", "#EXTM3U\n#EXTINF:1,\ntone.wav\n#EXT-X-ENDLIST\n");
    files.write("list.ffconcat", "ffconcat version 1.0\nfile tone.wav\n");
    files.write("cut.m4a", SoundFiles::bytesOf(files.tone("whole.m4a", 5)).substr(0, 9000));
    files.make("picture.mp4", "-f lavfi -i testsrc=d=1:s=64x64:r=10");
    files.tone("locked.mp4", 1,
               "-c:a aac -encryption_scheme cenc-aes-ctr -encryption_key 76a6c65c5ea762046bd749a2e632ccbb "
               "-encryption_kid a7e61c373e219033c21091fa607bf3b8");
    const auto noSound = [](const std::string& name) {
        return Refusal{name, AudioError::Kind::noSound, "“" + name + "” doesn’t hold any sound Varnic can read."};
    };
    const std::vector<Refusal> refusals{
        noSound("notes.txt"),
        noSound("list.m3u8"),
        noSound("list.ffconcat"),
        noSound("cut.m4a"),
        noSound("picture.mp4"),
        {"gone.wav", AudioError::Kind::missing, "“gone.wav” is no longer there."},
        {"empty.m4a", AudioError::Kind::empty, "“empty.m4a” is empty."},
        {".", AudioError::Kind::unreadable, "“.” can’t be opened."},
        {"locked.mp4", AudioError::Kind::protectedFile,
         "“locked.mp4” is protected against being read by other programs."},
    };
    for (const auto& [name, kind, sentence] : refusals) {
        try {
            static_cast<void>(AudioReader::open(files.path(name)));
            ADD_FAILURE() << "opened " << name;
        } catch (const AudioError& error) {
            EXPECT_EQ(error.kind(), kind) << name;
            EXPECT_EQ(error.what(), sentence);
        }
    }
}

TEST(AudioReader, open_nameThatLooksLikeAProtocol_isAFileName) {
    const SoundFiles files;
    const auto tone = files.tone("./concat:a|b.wav", 1);
    EXPECT_EQ(readAll(AudioReader::open(tone)).size(), 48'000U);
}

} // namespace
} // namespace varnic
