#include "VarnicCore/Library/SharedLibrary.h"

#include "VarnicCore/Library/LibraryError.h"
#include "VarnicCore/Library/LibraryLock.h"
#include "VarnicCore/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <fstream>
#include <set>
#include <unistd.h>

namespace varnic {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

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

    [[nodiscard]] std::vector<std::string> titles() const {
        LibraryStore store(folder.path());
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
    EXPECT_TRUE(ours.save(copy, now)) << "which would otherwise lose what was added";
}

TEST_F(SharedLibraryTests, save_sameContentAsOthersWrote_makesNoCopy) {
    theirs.save(titled("Same"), now);
    EXPECT_FALSE(ours.save(titled("Same"), now));
    EXPECT_THAT(titles(), ElementsAre("Same"));
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
    EXPECT_TRUE(ours.save(titled("Ours"), now));
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
