#include "VarnicCore/Library/LibraryMove.h"

#include "VarnicCore/FileSizeLimit.h"
#include "VarnicCore/Library/LibraryLock.h"
#include "VarnicCore/Library/RecordingMark.h"
#include "VarnicCore/Library/TemporaryLibrary.h"

#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <map>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

namespace varnic {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;

class LibraryMoveTest : public testing::Test {
protected:
    LibraryMoveTest() {
        TemporaryLibrary::write(root / "notes" / "A.json", "first");
        TemporaryLibrary::write(root / "notes" / "B.json", std::string(3UL << 20U, 'b'));
        TemporaryLibrary::write(root / "notes" / "broken.json.damaged", "{");
        TemporaryLibrary::write(root / "audio" / "A" / "you.m4a", std::string(100'000, 'y'));
        TemporaryLibrary::write(root / "Deleted" / "C" / "note.json", "gone");
        TemporaryLibrary::write(root / "running.lock", "7");
        fs::last_write_time(root / "Deleted" / "C", longAgo);
        fs::permissions(root / "notes" / "A.json", fs::perms::owner_read | fs::perms::owner_write);
        before = contents(root);
        before.erase("running.lock");
    }

    /// What lies in a folder, file by file.
    static std::map<std::string, std::string> contents(const fs::path& folder) {
        std::map<std::string, std::string> found;
        for (const auto& entry : fs::recursive_directory_iterator(folder)) {
            if (entry.is_regular_file()) {
                found[entry.path().lexically_relative(folder)] = TemporaryLibrary::read(entry.path());
            }
        }
        return found;
    }

    /// The user's sentence where the library can't go there, or why it stayed; empty where it has moved.
    std::string move(const fs::path& to, const std::function<void()>& meanwhile = [] {}) {
        try {
            LibraryMove move(root, to);
            move.copy([](double) {}, stop.get_token());
            meanwhile();
            const LibraryLock lock = LibraryLock::forWriting(root);
            move.catchUp();
            move.settle();
            left = move.removeOriginal();
            return "";
        } catch (const std::exception& error) {
            return error.what();
        }
    }

    void expectUntouched(const fs::path& place) const {
        auto now = contents(root);
        now.erase("running.lock");
        EXPECT_EQ(now, before);
        EXPECT_FALSE(fs::exists(place));
    }

    TemporaryLibrary library;
    const fs::path root = library.store.root();
    const fs::path target = library.folder() / "Notes of mine" / "Varnic";
    const fs::file_time_type longAgo = fs::file_time_type::clock::now() - std::chrono::days(20);
    std::map<std::string, std::string> before;
    std::stop_source stop;
    std::size_t left = 0;
};

TEST_F(LibraryMoveTest, move_takesEverythingAlong) {
    double reported = 0;
    LibraryMove moving(root, target);
    moving.copy([&reported](double done) { reported = done; }, {});
    EXPECT_EQ(reported, 1);
    auto now = contents(root);
    now.erase("running.lock");
    EXPECT_EQ(now, before) << "until the copy is the library";
    moving.catchUp();
    moving.settle();
    EXPECT_EQ(moving.removeOriginal(), 0U);
    EXPECT_EQ(contents(target), before);
    EXPECT_FALSE(fs::exists(root));
    EXPECT_EQ(fs::last_write_time(target / "Deleted" / "C"), longAgo) << "which tells how long it is kept";
    EXPECT_EQ(fs::status(target / "notes" / "A.json").permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(LibraryMoveTest, move_whatChangesMeanwhile_comesAlongAsItIsThen) {
    const auto change = [this] {
        TemporaryLibrary::write(root / "notes" / "A.json", "second");
        TemporaryLibrary::write(root / "notes" / "new.json", "new");
        TemporaryLibrary::write(root / "Earlier" / "A.json", "first");
        fs::remove_all(root / "audio" / "A");
        fs::remove(root / "notes" / "B.json");
    };
    EXPECT_EQ(move(target, change), "");
    before.erase("audio/A/you.m4a");
    before.erase("notes/B.json");
    before["notes/A.json"] = "second";
    before["notes/new.json"] = "new";
    before["Earlier/A.json"] = "first";
    EXPECT_EQ(contents(target), before);
}

TEST_F(LibraryMoveTest, removeOriginal_leavesWhatOthersWroteAfterTheCopy) {
    LibraryMove moving(root, target);
    moving.copy([](double) {}, {});
    moving.catchUp();
    moving.settle();
    TemporaryLibrary::write(root / "notes" / "A.json", "later");
    TemporaryLibrary::write(root / "notes" / "late.json", "late");
    EXPECT_EQ(moving.removeOriginal(), 2U);
    EXPECT_EQ(contents(root),
              (std::map<std::string, std::string>{{"notes/A.json", "later"}, {"notes/late.json", "late"}}));
    EXPECT_EQ(contents(target), before);
}

TEST_F(LibraryMoveTest, places_whereItCantGo_areRefused) {
    const fs::path full = library.folder() / "full";
    TemporaryLibrary::write(full / "thesis.odt", "words");
    TemporaryLibrary::write(library.folder() / "file", "");
    fs::create_directory_symlink(root, library.folder() / "link");

    struct Case {
        fs::path to;
        const char* sentence;
    };

    for (const auto& [to, sentence] :
         {Case{root, "already"}, Case{root / ".." / "Library" / "", "already"},
          Case{library.folder() / "link", "already"}, Case{root / "notes" / "deeper", "inside the library"},
          Case{library.folder(), "holds the library"}, Case{full, "holds something already"},
          Case{library.folder() / "file", "is not a folder"}, Case{library.folder() / "file" / "below", ""},
          Case{"/proc/varnic", ""}}) {
        EXPECT_THAT(move(to), testing::AllOf(testing::Not(IsEmpty()), HasSubstr(sentence))) << to;
    }
    EXPECT_EQ(contents(full), (std::map<std::string, std::string>{{"thesis.odt", "words"}}));
    expectUntouched(target);
}

TEST_F(LibraryMoveTest, move_fullDisk_leavesAllAsItWas) {
    {
        const FileSizeLimit full(1UL << 20U);
        EXPECT_THAT(move(target), HasSubstr("B.json"));
    }
    expectUntouched(target);
    EXPECT_EQ(move(target), "");
}

TEST_F(LibraryMoveTest, move_intoAFolderThatAnotherComputerMovesItsLibraryInto_takesNothingFromThat) {
    TemporaryLibrary::write(target / "notes" / "theirs.json", "theirs");
    TemporaryLibrary::write(target / LibraryMove::markName, "another computer\n" + root.string() + "\n");
    EXPECT_THAT(move(target), HasSubstr("still being moved there"));
    EXPECT_EQ(TemporaryLibrary::read(target / "notes" / "theirs.json"), "theirs");
}

TEST_F(LibraryMoveTest, move_intoAnotherLibrary_isToldFromAFolderThatIsNotEmpty) {
    const fs::path note = target / "notes" / (Uuid::random().text() + ".json");
    TemporaryLibrary::write(note, "theirs");
    EXPECT_THROW(LibraryMove(root, target), OtherLibraryError);
    EXPECT_EQ(TemporaryLibrary::read(note), "theirs");
}

TEST_F(LibraryMoveTest, move_stopped_leavesAllAsItWas) {
    stop.request_stop();
    EXPECT_EQ(move(target), "Stopped. The library is where it was.");
    expectUntouched(target);
}

TEST_F(LibraryMoveTest, move_aCallIsWorkedOn_stays) {
    const auto mark = RecordingMarkFile::create(root / "audio" / "D", {.sides = {Speaker::you}});
    EXPECT_THAT(move(target), HasSubstr("working on a call"));
    EXPECT_FALSE(fs::exists(target));
    const auto lock = LibraryLock::forCall(root / "audio" / "A");
    EXPECT_THAT(move(target), HasSubstr("working on a call"));
    EXPECT_FALSE(fs::exists(target));
}

TEST_F(LibraryMoveTest, move_killed_losesNothingAndCanBeDoneAgain) {
    for (const double when : {0.1, 0.4, 0.6, 1.0, 2.0}) {
        const pid_t child = ::fork();
        if (child == 0) {
            LibraryMove moving(root, target);
            moving.copy(
                [when](double done) {
                    if (done >= when) {
                        ::raise(SIGKILL);
                    }
                },
                {});
            moving.catchUp();
            ::raise(SIGKILL);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
        auto now = contents(root);
        now.erase("running.lock");
        EXPECT_EQ(now, before) << when;
        EXPECT_TRUE(fs::exists(target)) << when;
    }
    fs::remove(root / "notes" / "A.json");
    before.erase("notes/A.json");
    EXPECT_EQ(move(target), "");
    EXPECT_EQ(contents(target), before) << "without a note that was deleted in between";
}

} // namespace
} // namespace varnic
