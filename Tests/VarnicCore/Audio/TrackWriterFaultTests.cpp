#include "VarnicCore/Audio/SoundFiles.h"
#include "VarnicCore/Audio/Tones.h"
#include "VarnicCore/Audio/TrackWriter.h"
#include "VarnicCore/FileSizeLimit.h"
#include "VarnicCore/Files/LibraryError.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <string>
#include <vector>

namespace varnic {
namespace {

constexpr AudioFormat mono = TrackFormat::processing;
constexpr std::size_t tenth = 4800;

/// Writes in a child process until the parent, told over a pipe that `seconds` are written, kills it.
void writeAndDie(const std::filesystem::path& file, bool compressed, double seconds) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        TrackWriter writer(file, Speaker::you, compressed);
        for (std::size_t at = 0; writer.seconds() < seconds; at += tenth) {
            writer.append(toneBuffer(mono, at, tenth), std::nullopt);
        }
        static_cast<void>(::write(ends[1], "x", 1));
        while (true) {
            ::pause();
        }
    }
    char told = 0;
    EXPECT_EQ(::read(ends[0], &told, 1), 1);
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST(TrackWriterFaults, killed_atAnyMoment_losesAtMostTwoSeconds) {
    const SoundFiles files;
    for (const double seconds : {2.3, 7.0, 61.9}) {
        SCOPED_TRACE(seconds);
        const auto file = files.path("you.m4a");
        writeAndDie(file, true, seconds);
        const std::vector<float> samples = readAll(AudioReader::open(file));
        const double left = static_cast<double>(samples.size()) / 48'000;
        EXPECT_GT(left, seconds - 2);
        EXPECT_LE(left, seconds + 0.1);
        EXPECT_EQ(audioLength(file).frames, static_cast<std::int64_t>(samples.size()));
        EXPECT_TRUE(isToneFrom(samples, 2000, 1000, 48'000));
        EXPECT_TRUE(isToneFrom(samples, samples.size() - 2000, 1000, 48'000));
        files.run("ffmpeg -v error -xerror -i you.m4a -f null -");
    }
    writeAndDie(files.path("you.wav"), false, 3);
    EXPECT_EQ(audioLength(files.path("you.wav")).frames, 3 * 48'000);
}

TEST(TrackWriterFaults, close_longAfterAFullDisk_hasTheSoundInPlaceAndSilenceBetween) {
    const SoundFiles files;
    for (const bool compressed : {true, false}) {
        SCOPED_TRACE(compressed);
        TrackWriter writer(files.path(compressed ? "you.m4a" : "you.caf"), Speaker::you, compressed);
        const FileSizeLimit limit(compressed ? 40'000 : 1'000'000);
        double failedAt = 0;
        // The disk is full from some moment on, and has room again after half a minute.
        for (std::size_t at = 0; at < 60 * mono.rate; at += tenth) {
            const double seconds = static_cast<double>(at) / mono.rate;
            if (seconds >= 30) {
                limit.lift();
            }
            const std::int64_t before = writer.framesWritten();
            try {
                writer.append(toneBuffer(mono, at, tenth), seconds);
            } catch (const LibraryError& error) {
                EXPECT_EQ(error.code().value(), EFBIG);
                EXPECT_LT(seconds, 30);
                EXPECT_EQ(writer.framesWritten(), before);
                failedAt = failedAt == 0 ? seconds : failedAt;
                if (seconds < 29.85) {
                    continue;
                }
                // Killed now, the file would play as far as the disk had room.
                const std::vector<float> part = readAll(AudioReader::open(writer.url()));
                EXPECT_GT(static_cast<double>(part.size()) / mono.rate, failedAt - 2);
                EXPECT_TRUE(isToneFrom(part, part.size() - 5000, 2000, 48'000));
            }
        }
        writer.close();
        EXPECT_GT(failedAt, 3);
        const std::vector<float> samples = readAll(AudioReader::open(writer.url()));
        ASSERT_EQ(samples.size(), 60U * 48'000);
        const auto gap = static_cast<std::size_t>(failedAt * mono.rate);
        EXPECT_TRUE(isToneFrom(samples, gap - 10'000, 8000, 48'000)) << "what was taken is kept";
        EXPECT_NEAR(samples.at(gap + 100'000), 0, 1e-3);
        EXPECT_TRUE(isToneFrom(samples, 31 * 48'000, 48'000, 48'000));
        EXPECT_TRUE(isToneFrom(samples, 58 * 48'000, 48'000, 48'000));
    }
}

TEST(TrackWriterFaults, close_noRoomForTheTail_throwsUntilThereIs) {
    const SoundFiles files;
    TrackWriter writer(files.path("you.m4a"), Speaker::you, true);
    writer.append(toneBuffer(mono, 0, 5 * 48'000), 0.0);
    writer.append(toneBuffer(mono, 0, tenth), std::nullopt);
    const FileSizeLimit limit(std::filesystem::file_size(writer.url()));
    EXPECT_THROW(writer.close(), LibraryError);
    EXPECT_GT(audioLength(writer.url()).frames, 4 * 48'000);
    limit.lift();
    writer.close();
    EXPECT_EQ(audioLength(writer.url()).frames, 5 * 48'000 + static_cast<std::int64_t>(tenth));
}

TEST(TrackWriterFaults, close_noRoomForTheIndex_isWholeAllTheSame) {
    const SoundFiles files;
    TrackWriter writer(files.path("you.m4a"), Speaker::you, true);
    writer.append(toneBuffer(mono, 0, 60 * 48'000), 0.0);
    writer.append(toneBuffer(mono, 0, tenth), std::nullopt);
    // Room for the last fragment of a tenth of a second, not for the index of a minute.
    const FileSizeLimit limit(std::filesystem::file_size(writer.url()) + 3000);
    writer.close();
    EXPECT_EQ(audioLength(writer.url()).frames, 60 * 48'000 + static_cast<std::int64_t>(tenth));
}

TEST(TrackWriterFaults, append_folderRemoved_saysWhichFile) {
    const SoundFiles files;
    const auto folder = files.path("call");
    std::filesystem::create_directory(folder);
    for (const std::string name : {"you.m4a", "you.caf"}) {
        std::filesystem::create_directory(folder);
        TrackWriter writer(folder / name, Speaker::you, name == "you.m4a");
        writer.append(toneBuffer(mono, 0, 96'000), 0.0);
        std::filesystem::remove_all(folder);
        try {
            writer.append(toneBuffer(mono, 0, tenth), 2.0);
            ADD_FAILURE() << "written to a file that is gone";
        } catch (const LibraryError& error) {
            EXPECT_EQ(error.what(),
                      "“" + (folder / name).string() + "” couldn’t be written: there is no such file or folder.");
        }
        EXPECT_EQ(writer.framesWritten(), 96'000);
        EXPECT_THROW(writer.close(), LibraryError);
    }
    EXPECT_THROW(TrackWriter(folder / "you.m4a", Speaker::you, true), LibraryError);
}

} // namespace
} // namespace varnic
