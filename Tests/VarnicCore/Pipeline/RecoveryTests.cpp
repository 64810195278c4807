#include "VarnicCore/Audio/AudioFiles.h"
#include "VarnicCore/Audio/AudioMix.h"
#include "VarnicCore/Audio/TrackWriter.h"
#include "VarnicCore/Files/Folders.h"
#include "VarnicCore/Files/LibraryError.h"
#include "VarnicCore/Library/TemporaryLibrary.h"
#include "VarnicCore/Library/TrackFiles.h"
#include "VarnicCore/Pipeline/Recovery.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <stop_token>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace varnic {
namespace {

namespace fs = std::filesystem;

class RecoveryTest : public ::testing::Test {
protected:
    [[nodiscard]] fs::path makeFolder() const {
        fs::create_directories(folder());
        return folder();
    }

    [[nodiscard]] fs::path folder() const { return library.store.audioFolder(mark.id); }

    /// A finished track, as an unmarked folder or an import has it.
    void track(const std::string& name, double seconds) const {
        AudioMix::render({}, seconds, makeFolder() / name, name.ends_with(".m4a"));
    }

    [[nodiscard]] std::vector<DeadRecording> find() const { return Recovery::find(library.store); }

    TemporaryLibrary library;
    RecordingMark mark{Uuid::random(), parseDate("2026-03-14T09:26:53.589Z"), "Zoom", {Speaker::you, Speaker::them}};
};

/// A child process that records both sides for so many seconds each, marked, and then waits.
class Recorder {
public:
    Recorder(const fs::path& folder, const RecordingMark& mark, double yours, double theirs) {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe(ends.data()), 0);
        child_ = ::fork();
        if (child_ == 0) {
            const RecordingMarkFile file = RecordingMarkFile::create(folder, mark);
            TrackWriter you(folder / "you.m4a", Speaker::you, true);
            TrackWriter them(folder / "them.m4a", Speaker::them, true);
            for (double at = 0; at < std::max(yours, theirs); at += 0.5) {
                for (auto& [track, seconds] : {std::pair(&you, yours), std::pair(&them, theirs)}) {
                    if (at < seconds) {
                        track->append({48'000, {std::vector<float>(24'000, 0.1F)}}, at);
                    }
                }
            }
            static_cast<void>(::write(ends[1], "x", 1));
            while (true) {
                ::pause();
            }
        }
        char told = 0;
        EXPECT_EQ(::read(ends[0], &told, 1), 1);
        ::close(ends[0]);
        ::close(ends[1]);
    }

    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    ~Recorder() { kill(); }

    void kill() {
        if (child_ > 0) {
            ::kill(child_, SIGKILL);
            ::waitpid(child_, nullptr, 0);
            child_ = 0;
        }
    }

private:
    pid_t child_ = 0;
};

TEST_F(RecoveryTest, find_killedRecorder_givesItsTracksOnceItIsDead) {
    Recorder recorder(makeFolder(), mark, 10, 10);
    EXPECT_TRUE(find().empty()) << "it lives";
    recorder.kill();
    const std::vector<DeadRecording> dead = find();
    ASSERT_EQ(dead.size(), 1U);
    const Recording& recording = dead[0].recording;
    EXPECT_TRUE(dead[0].hasSound());
    EXPECT_EQ(dead[0].folder, folder());
    EXPECT_EQ(dead[0].mark.read(), mark);
    EXPECT_EQ(recording.noteID, mark.id);
    EXPECT_EQ(recording.startedAt, mark.startedAt);
    EXPECT_EQ(recording.source, "Zoom");
    EXPECT_EQ(recording.audioFolder, mark.id.text());
    EXPECT_EQ(recording.tracks, (CallTracks{folder() / "you.m4a", folder() / "them.m4a"}));
    EXPECT_GT(recording.duration, 8);
    EXPECT_LE(recording.duration, 10);
    EXPECT_TRUE(find().empty()) << "it is in our hands";
}

TEST_F(RecoveryTest, find_sideOfWhichNothingIsOnDisk_isSilenceOfTheOthersLength) {
    const fs::path you = makeFolder() / "you.m4a";
    const fs::path them = folder() / "them.m4a";
    for (const auto& [yours, theirs] : {std::pair(5.0, 0.5), std::pair(0.0, 5.0)}) {
        Recorder(folder(), mark, yours, theirs).kill();
        ASSERT_EQ(AudioFiles::duration(yours < theirs ? you : them), 0);
        const std::vector<DeadRecording> dead = find();
        ASSERT_EQ(dead.size(), 1U);
        EXPECT_EQ(dead[0].recording.tracks, (CallTracks{you, them}));
        EXPECT_GE(dead[0].recording.duration, 3);
        EXPECT_NEAR(AudioFiles::duration(you), AudioFiles::duration(them), 0.0001);
        EXPECT_EQ(AudioFiles::duration(you), dead[0].recording.duration);
        fs::remove_all(folder());
    }
}

TEST_F(RecoveryTest, find_sideWithAnUnreadableTrack_leavesThatAlone) {
    Recorder(makeFolder(), mark, 5, 5).kill();
    const std::string unreadable(20'000, 'x');
    TemporaryLibrary::write(folder() / "them.m4a", unreadable);
    ASSERT_EQ(find().size(), 1U);
    EXPECT_EQ(find()[0].recording.tracks, (CallTracks{folder() / "you.m4a", std::nullopt}));
    EXPECT_EQ(TemporaryLibrary::read(folder() / "them.m4a"), unreadable);
}

TEST_F(RecoveryTest, find_givenUp_findsItAgain) {
    {
        const RecordingMarkFile file = RecordingMarkFile::create(makeFolder(), mark);
    }
    track("them.m4a", 3);
    for (int round = 0; round < 2; ++round) {
        const std::vector<DeadRecording> dead = find();
        ASSERT_EQ(dead.size(), 1U);
        EXPECT_EQ(dead[0].recording.tracks, (CallTracks{std::nullopt, folder() / "them.m4a"}));
        EXPECT_EQ(dead[0].recording.duration, 3);
    }
    find()[0].mark.remove();
    EXPECT_FALSE(RecordingMarkFile::isIn(folder()));
}

TEST_F(RecoveryTest, find_noteSaved_onlyRemovesTheMark) {
    {
        const RecordingMarkFile file = RecordingMarkFile::create(makeFolder(), mark);
    }
    track("you.m4a", 3);
    Note note(mark.startedAt, "Saved");
    note.id = mark.id;
    library.store.save(note);
    EXPECT_TRUE(find().empty());
    EXPECT_EQ(TemporaryLibrary::names(folder()), std::set<std::string>{"you.m4a"});
    library.store.remove(mark.id);
    track("you.m4a", 3);
    EXPECT_TRUE(find().empty()) << "what the user deleted stays so";
}

TEST_F(RecoveryTest, find_markDamagedOrMissing_isToldFromTheTracks) {
    const std::vector<std::string> contents{"",
                                            "{",
                                            "[]",
                                            "null",
                                            R"({"id": 7, "startedAt": "x"})",
                                            "\xFF",
                                            R"({"process": "me"})",
                                            std::string(100'000, '[')};
    track("you.m4a", 3);
    track("them.caf", 4.5);
    const auto check = [this](const std::string& what) {
        SCOPED_TRACE(what.substr(0, 30));
        const std::vector<DeadRecording> dead = find();
        ASSERT_EQ(dead.size(), 1U);
        EXPECT_EQ(dead[0].recording.noteID, mark.id);
        EXPECT_EQ(dead[0].recording.source, "Call");
        EXPECT_EQ(dead[0].recording.duration, 4.5);
        EXPECT_EQ(dead[0].recording.tracks, (CallTracks{folder() / "you.m4a", folder() / "them.caf"}));
        const auto changed = std::chrono::file_clock::to_sys(fs::last_write_time(folder() / "them.caf"));
        EXPECT_NEAR(std::chrono::duration<double>(changed - dead[0].recording.startedAt).count(), 4.5, 0.01);
    };
    for (const std::string& content : contents) {
        TemporaryLibrary::write(folder() / "recording.json", content);
        check(content);
    }
    fs::remove(folder() / "recording.json");
    check("none");
}

TEST_F(RecoveryTest, find_noSoundInIt_saysSo) {
    {
        const RecordingMarkFile file = RecordingMarkFile::create(makeFolder(), mark);
    }
    ASSERT_EQ(find().size(), 1U);
    EXPECT_FALSE(find()[0].hasSound()) << "killed before there was a track";
    {
        const TrackWriter writer(folder() / "you.m4a", Speaker::you, true);
    }
    TemporaryLibrary::write(folder() / "them.m4a", std::string(5000, 'x'));
    const fs::path unfinished = folder() / ".a copy.tmp";
    TemporaryLibrary::write(unfinished, "RIFF");
    ASSERT_EQ(find().size(), 1U);
    EXPECT_FALSE(find()[0].hasSound());
    EXPECT_FALSE(fs::exists(unfinished));
    EXPECT_EQ(find()[0].recording.startedAt, mark.startedAt);
}

TEST_F(RecoveryTest, find_killedBeforeThereWasAMark_removesWhatIsLeft) {
    const fs::path unnamed = makeFolder() / (".recording.json." + Uuid::random().text() + ".tmp");
    TemporaryLibrary::write(unnamed, "{");
    const int living = ::open(unnamed.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(living, LOCK_EX), 0);
    EXPECT_TRUE(find().empty());
    EXPECT_TRUE(fs::exists(unnamed));
    ::close(living);
    EXPECT_TRUE(find().empty());
    EXPECT_FALSE(fs::exists(folder()));
    fs::create_directories(folder() / "of another program");
    EXPECT_TRUE(find().empty());
    EXPECT_TRUE(fs::exists(folder()));
}

TEST_F(RecoveryTest, create_whileOthersRecover_succeeds) {
    std::jthread recovering([&](const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            static_cast<void>(find());
        }
    });
    for (int i = 0; i < 200; ++i) {
        const RecordingMarkFile held = RecordingMarkFile::create(folder(), mark);
        EXPECT_FALSE(RecordingMarkFile::adopt(folder())) << "it is held";
        std::error_code ignored;
        fs::remove_all(folder(), ignored);
    }
}

TEST_F(RecoveryTest, find_otherFolders_areLeftAlone) {
    fs::create_directories(library.store.audioDir() / "notes of mine");
    TemporaryLibrary::write(library.store.audioDir() / "notes of mine" / "you.m4a", "x");
    TemporaryLibrary::write(library.store.audioDir() / Uuid::random().text(), "a file");
    fs::create_directories(makeFolder() / "recording.json");
    EXPECT_TRUE(find().empty());
    fs::remove(folder() / "recording.json");
    ASSERT_EQ(::mkfifo((folder() / "recording.json").c_str(), 0600), 0);
    EXPECT_TRUE(find().empty()) << "and a pipe doesn't hang it";
}

TEST_F(RecoveryTest, create_folderInOtherHands_isRefused) {
    const RecordingMarkFile first = RecordingMarkFile::create(makeFolder(), mark);
    EXPECT_THROW(RecordingMarkFile::create(folder(), mark), LibraryError);
    EXPECT_THROW(RecordingMarkFile::create(folder() / "recording.json", mark), LibraryError);
    EXPECT_EQ(first.read(), mark);
    struct stat status{};
    ASSERT_EQ(::stat((folder() / "recording.json").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    EXPECT_EQ(TemporaryLibrary::names(folder()), std::set<std::string>{"recording.json"});
}

TEST(TrackFiles, of_anyForm_theUsualOnesFirst) {
    const TemporaryLibrary library;
    const fs::path folder = library.folder() / "call";
    for (const char* name : {"you.mp3", "you.wav", "you.caf", "them.OGG", "your.m4a", "them.m4a.tmp"}) {
        TemporaryLibrary::write(folder / name, "sound");
    }
    fs::create_directory(folder / "them.m4a");
    const auto names = [&](Speaker side) {
        std::vector<std::string> found;
        for (const fs::path& file : TrackFiles::of(Folders::entries(folder), side)) {
            found.push_back(file.filename());
        }
        return found;
    };
    EXPECT_THAT(names(Speaker::you), testing::ElementsAre("you.caf", "you.wav", "you.mp3"));
    EXPECT_THAT(names(Speaker::them), testing::ElementsAre("them.OGG"));
}

} // namespace
} // namespace varnic
