#include "VarnicCore/Library/SharedLibrary.h"

#include "VarnicCore/Files/LibraryError.h"
#include "VarnicCore/Library/LibraryLock.h"
#include "VarnicCore/Library/NoteFileReader.h"
#include "VarnicCore/Models/CallProblem.h"
#include "VarnicCore/TemporaryFolder.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <fcntl.h>
#include <stdio.h> // renameat2 is the system's
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <fstream>
#include <functional>
#include <random>
#include <set>
#include <thread>

namespace varnic {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;
using testing::UnorderedElementsAreArray;

/// Two programs on one library.
class SharedLibraryTests : public testing::Test {
protected:
    SharedLibraryTests() {
        ours.save(note, now);
        theirs.loadAll(now);
    }

    Note titled(const std::string& title) const {
        Note changed = note;
        changed.title = title;
        return changed;
    }

    [[nodiscard]] std::vector<std::string> titles() const { return titlesIn(folder.path()); }

    [[nodiscard]] std::vector<std::string> titlesIn(const fs::path& library) const {
        LibraryStore store(library);
        std::vector<std::string> result;
        for (const Note& stored : store.loadAll(now)) {
            result.push_back(stored.title);
        }
        return result;
    }

    [[nodiscard]] fs::path file() const { return ours.store().url(note.id); }

    TemporaryFolder folder;
    Date now = currentDate();
    Note note{Uuid::random(), "First", now, {}, CallRecord{.audioFolder = "x", .tracks = {Speaker::you}}};
    SharedLibrary ours{folder.path()};
    SharedLibrary theirs{folder.path()};
};

TEST_F(SharedLibraryTests, save_fileChangedByOthers_keepsBoth) {
    theirs.save(titled("Theirs"), now);
    const auto copy = ours.save(titled("Ours"), now);
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->title, "Theirs (other copy)");
    EXPECT_FALSE(copy->call->audioFolder);
    EXPECT_THAT(copy->call->tracks, IsEmpty());
    EXPECT_THAT(titles(), UnorderedElementsAre("Ours", "Theirs (other copy)"));
    EXPECT_FALSE(ours.save(titled("Ours again"), now));
    EXPECT_TRUE(theirs.save(titled("Theirs again"), now));
    EXPECT_THAT(titles(), UnorderedElementsAre("Theirs again", "Theirs (other copy)", "Ours again (other copy)"));
}

TEST_F(SharedLibraryTests, save_othersTypeOn_oneCopyFollowsThem) {
    // What the others' paragraph says, version after version, and how many copies there are then.
    const std::vector<std::pair<std::string, std::size_t>> versions{
        {"Ship", 1}, {"Ship it", 1}, {"Ship it now", 1}, {"Shi", 2}, {"Shine", 2}};
    Note typed = titled("Theirs");
    std::set<std::string> copies;
    for (const auto& [text, count] : versions) {
        typed.blocks.front().text = text;
        theirs.save(typed, now);
        if (const auto copy = ours.save(titled("Ours " + text), now)) {
            copies.insert(copy->id.text());
        }
        EXPECT_EQ(copies.size(), count) << text;
        theirs.loadAll(now);
    }
    std::vector<std::string> kept;
    LibraryStore store(folder.path());
    for (const Note& stored : store.loadAll(now)) {
        kept.push_back(stored.title + ": " + stored.blocks.front().text);
    }
    EXPECT_THAT(kept,
                UnorderedElementsAre("Ours Shine: ", "Theirs (other copy): Ship it now", "Theirs (other copy): Shine"));
}

TEST_F(SharedLibraryTests, save_copyThatFollows_isNewsToThisProgram) {
    Note typed = titled("Theirs");
    theirs.save(typed, now);
    Note copy = *ours.save(titled("Ours"), now);
    theirs.loadAll(now);
    typed.blocks.front().text = "more";
    theirs.save(typed, now);
    EXPECT_FALSE(ours.save(titled("Ours again"), now));
    EXPECT_THAT(ours.changes(std::nullopt, now), SizeIs(1));
    copy.title = "Edited";
    EXPECT_FALSE(ours.save(copy, now));
    const Note kept = *ours.store().load(copy.id, now);
    EXPECT_EQ(kept.title + ": " + kept.blocks.front().text, "Edited: more") << "what was added is not lost";
}

TEST_F(SharedLibraryTests, save_bothTypeInDifferentPlaces_bringsThemTogether) {
    theirs.save(note, now);
    Note mine = note;
    Note other = note;
    for (int i = 0; i < 3; ++i) {
        other.blocks.push_back(Block{.text = "theirs"});
        mine.blocks.push_back(Block{.text = "mine"});
        EXPECT_FALSE(theirs.save(other, now));
        EXPECT_FALSE(ours.save(mine, now));
    }
    EXPECT_THAT(titles(), ElementsAre("First"));
    for (SharedLibrary* library : {&ours, &theirs}) {
        const auto changes = library->changes(std::nullopt, now);
        ASSERT_THAT(changes, SizeIs(1)) << "both are told";
        EXPECT_THAT(changes.front().note->blocks, SizeIs(7));
    }
}

/// A synchroniser that puts its versions in place whenever it likes, and writes the next one into the file that it has
/// just replaced: who is reading that meets half a note. What it replaces itself is its own affair.
TEST_F(SharedLibraryTests, save_whileASynchroniserReplacesTheFile_losesNoVersion) {
    constexpr int versions = 200;
    std::atomic<bool> isDone = false;
    std::set<std::string> put;
    std::jthread synchroniser([&] {
        std::minstd_rand random(1); // any sequence will do
        for (int i = 0; i < versions; ++i) {
            const Note version = titled(fmt::format("Theirs {}", i));
            const fs::path part = folder.path() / "part";
            std::ofstream(part) << LibraryStore::encoded(version);
            put.insert(version.title);
            // At any moment of a save. On a busy machine a thread that yields comes back late.
            const auto moment = std::chrono::steady_clock::now() + std::chrono::microseconds(random() % 500);
            while (std::chrono::steady_clock::now() < moment) {
            }
            // Not there for a moment where half a note has just been set aside.
            while (::renameat2(AT_FDCWD, part.c_str(), AT_FDCWD, file().c_str(), RENAME_EXCHANGE) != 0) {
                std::this_thread::yield();
            }
            NoteFileReader reader;
            put.erase(reader.read(part, now).title);
        }
        isDone = true;
    });
    for (int i = 0; !isDone; ++i) {
        ours.save(titled(fmt::format("Ours {}", i)), now);
    }
    synchroniser.join();
    std::set<std::string> kept;
    for (const std::string& title : titles()) {
        kept.insert(title.substr(0, title.find(" (")));
    }
    EXPECT_GT(put.size(), 10U);
    EXPECT_TRUE(std::ranges::includes(kept, put));
}

TEST_F(SharedLibraryTests, save_sameContentAsOthersWrote_makesNoCopy) {
    theirs.save(titled("Same"), now);
    EXPECT_FALSE(ours.save(titled("Same"), now));
    EXPECT_THAT(titles(), ElementsAre("Same"));
}

TEST_F(SharedLibraryTests, fileOfAnotherName_isEditedDeletedAndFollowed) {
    const fs::path other = file().parent_path() / "My plan.json";
    const auto rename = [&] {
        fs::rename(file(), other);
        theirs.loadAll(now);
        ours.loadAll(now);
    };
    rename();
    theirs.save(titled("Theirs"), now);
    EXPECT_FALSE(fs::exists(other));
    const auto changes = ours.changes(std::nullopt, now);
    ASSERT_THAT(changes, SizeIs(1));
    EXPECT_EQ(changes.front().note->title, "Theirs");
    ours.accept(changes.front());
    EXPECT_FALSE(ours.save(titled("Ours"), now));
    EXPECT_THAT(titles(), ElementsAre("Ours"));

    rename();
    theirs.remove(note.id);
    EXPECT_THAT(titles(), IsEmpty());
    ASSERT_THAT(ours.changes(std::nullopt, now), SizeIs(1));
    EXPECT_FALSE(ours.changes(std::nullopt, now).front().note);
    EXPECT_TRUE(theirs.restore(note.id, now));
}

TEST_F(SharedLibraryTests, conflictCopies_areTakenInOnceUnlessTheyAreInTheNote) {
    struct Case {
        const char* name;
        const char* title;
        std::vector<std::string> titles;
    };

    const std::vector<Case> cases{
        {"{}.sync-conflict-20260314-092653-ABCDEFG.json", "First", {"First"}},
        {"{}.sync-conflict-20260314-092654-ABCDEFG.json", "Theirs", {"First", "Theirs (other copy)"}},
        {"{} (Sam's conflicted copy 2026-03-14).json", "Theirs", {"First", "Theirs (other copy)"}},
        {"{}_conflict-20260314-092653.json", "Other", {"First", "Theirs (other copy)", "Other (other copy)"}}};
    for (const Case& one : cases) {
        const fs::path conflict = file().parent_path() / fmt::format(fmt::runtime(one.name), note.id.text());
        std::ofstream(conflict) << LibraryStore::encoded(titled(one.title));
        EXPECT_TRUE(ours.takeInConflicts(std::set{conflict.filename().string()}, now)) << one.name;
        EXPECT_FALSE(fs::exists(conflict)) << one.name;
        EXPECT_THAT(titles(), UnorderedElementsAreArray(one.titles)) << one.name;
    }
    EXPECT_THAT(ours.changes(std::nullopt, now), SizeIs(2)) << "the copies are news";
    std::ofstream(file().parent_path() / "half conflict.json") << "{";
    std::ofstream(file().parent_path() / "only conflict.json") << LibraryStore::encoded(Note(now, "Alone"));
    EXPECT_FALSE(ours.takeInConflicts(std::nullopt, now));
    EXPECT_THAT(titles(), testing::Contains("Alone"));
}

TEST_F(SharedLibraryTests, folderThatCannotBeLookedInto_endsWithASentenceAndRemovesNoNote) {
    const fs::path notes = folder.path() / "notes";
    const fs::path away = folder.path() / "away";
    fs::rename(notes, away);
    const std::vector<std::pair<std::string, std::function<void()>>> cases{
        {"there is no such file or folder", [] {}},
        {"links lead in a circle", [&] { fs::create_symlink("notes", notes); }}};
    for (const auto& [reason, prepare] : cases) {
        prepare();
        EXPECT_THAT([&] { static_cast<void>(ours.changes(std::nullopt, now)); },
                    testing::ThrowsMessage<LibraryError>(testing::HasSubstr(reason)));
        EXPECT_THAT([&] { static_cast<void>(ours.changes(std::set{file().filename().string()}, now)); },
                    testing::ThrowsMessage<LibraryError>(testing::HasSubstr(reason)));
    }
    EXPECT_THROW(ours.save(titled("Ours"), now), LibraryError);
    fs::remove(notes);
    fs::rename(away, notes);
    EXPECT_THAT(ours.changes(std::nullopt, now), IsEmpty());
    EXPECT_FALSE(ours.save(titled("Ours"), now));
}

/// Without the permission to look into the folder, which the administrator always has.
TEST_F(SharedLibraryTests, save_withoutPermission_endsWithASentence) {
    fs::permissions(folder.path(), fs::perms::all);
    fs::permissions(folder.path() / "notes", fs::perms::none);
    const pid_t child = ::fork();
    if (child == 0) {
        constexpr uid_t nobody = 65'534;
        const bool isOrdinary = ::geteuid() != 0 || ::setuid(nobody) == 0;
        int told = 0;
        try {
            ours.save(titled("Ours"), now);
        } catch (const LibraryError& error) {
            told += error.code() == std::errc::permission_denied ? 1 : 0;
        }
        ours.loadAll(now);
        told += ours.store().listingProblem() ? 1 : 0;
        ::_exit(isOrdinary ? told : 9);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 2);
    fs::permissions(folder.path() / "notes", fs::perms::owner_all);
}

TEST_F(SharedLibraryTests, takeIn_replacesOnlyWhatItWasMadeFrom) {
    struct Case {
        const char* stored;
        bool isBase;
        std::vector<std::string> titles;
    };

    for (const Case& one : std::vector<Case>{{"First", true, {"Spare"}},
                                             {"Changed", false, {"Changed", "Spare (other copy)"}},
                                             {"Spare", false, {"Spare"}}}) {
        const TemporaryFolder own;
        SharedLibrary library(own.path());
        library.save(titled(one.stored), now);
        const std::uint64_t base = one.isBase ? library.knownFingerprint(note.id) : 0;
        for (int i = 0; i < 2; ++i) {
            library.takeIn(titled("Spare"), base, now);
            EXPECT_THAT(titlesIn(own.path()), UnorderedElementsAreArray(one.titles)) << one.stored;
        }
    }
}

TEST_F(SharedLibraryTests, takeIn_callWithAndWithoutItsWords_isOneNote) {
    Note waiting = titled("Call on Sat 14 Mar");
    waiting.call->problem = quitProblem;
    Note written = titled("Pricing & launch");
    written.call->segments = {Segment(Speaker::them, 0, 1, "Hello.")};
    for (const auto& [stored, taken] : {std::pair(waiting, written), std::pair(written, waiting)}) {
        const TemporaryFolder own;
        SharedLibrary library(own.path());
        library.save(stored, now);
        library.takeIn(taken, 0, now);
        EXPECT_THAT(library.loadAll(now), ElementsAre(written));
    }
}

TEST_F(SharedLibraryTests, save_fileDamagedByOthers_setsEachAside) {
    for (const char* content : {"{", "[1]"}) {
        std::ofstream(file()) << content;
        EXPECT_FALSE(ours.save(titled("Ours"), now));
    }
    EXPECT_THAT(titles(), ElementsAre("Ours"));
    EXPECT_TRUE(fs::exists(file().string() + ".damaged"));
    EXPECT_TRUE(fs::exists(file().string() + ".damaged-2"));
}

TEST_F(SharedLibraryTests, save_deletedMeanwhile_bringsTheRecordingBack) {
    fs::create_directories(ours.store().audioFolder(note.id));
    theirs.remove(note.id);
    EXPECT_FALSE(ours.save(titled("Ours"), now));
    EXPECT_TRUE(fs::exists(ours.store().audioFolder(note.id)));
    EXPECT_THAT(titles(), ElementsAre("Ours"));

    theirs.loadAll(now);
    theirs.save(titled("Edited before it was deleted"), now);
    theirs.remove(note.id);
    EXPECT_TRUE(ours.save(titled("Ours again"), now));
    EXPECT_THAT(titles(), SizeIs(2));
}

TEST_F(SharedLibraryTests, changes_ofOthersOnly_untilAccepted) {
    ours.save(titled("Ours"), now);
    ours.save(Note(now, "Second"), now);
    EXPECT_THAT(ours.changes(std::nullopt, now), IsEmpty());

    theirs.loadAll(now);
    theirs.save(titled("Theirs"), now);
    theirs.save(Note(now, "New"), now);
    std::ofstream(folder.path() / "notes" / "half.json") << "{";
    const fs::path second = folder.path() / "notes" / "copy of a note.json";
    std::ofstream(second) << LibraryStore::encoded(titled("Ignored"));
    EXPECT_THAT(ours.changes(std::set<std::string>{"none.json", "half.json"}, now), IsEmpty());
    auto changes = ours.changes(std::nullopt, now);
    ASSERT_THAT(changes, SizeIs(2));
    EXPECT_THAT(ours.changes(std::nullopt, now), SizeIs(2)) << "they were not accepted";
    for (const NoteChange& change : changes) {
        ours.accept(change);
    }
    EXPECT_THAT(ours.changes(std::nullopt, now), IsEmpty());
    EXPECT_FALSE(ours.save(titled("Seen"), now));

    fs::remove(second);
    theirs.remove(note.id);
    changes = ours.changes(std::nullopt, now);
    ASSERT_THAT(changes, SizeIs(1));
    EXPECT_FALSE(changes.front().note);
    ours.accept(changes.front());
    EXPECT_THAT(ours.changes(std::nullopt, now), IsEmpty());
    theirs.restore(note.id, now);
    EXPECT_THAT(ours.changes(std::nullopt, now), SizeIs(1));
}

TEST(LibraryLockTests, application_isHeldByOne) {
    const TemporaryFolder folder;
    EXPECT_FALSE(LibraryLock::application(folder.path()));
    {
        const auto held = LibraryLock::forApplication(folder.path());
        ASSERT_TRUE(held);
        EXPECT_FALSE(LibraryLock::forApplication(folder.path()));
        EXPECT_EQ(LibraryLock::application(folder.path()), ::getpid());
        LibraryLock::forWriting(folder.path());
    }
    EXPECT_FALSE(LibraryLock::application(folder.path()));
    EXPECT_TRUE(LibraryLock::forApplication(folder.path()));
    EXPECT_THROW(LibraryLock::forApplication(folder.path() / "missing"), LibraryError);
}

} // namespace
} // namespace varnic
