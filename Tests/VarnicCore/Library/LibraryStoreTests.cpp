#include "VarnicCore/Library/LibraryStore.h"

#include "VarnicCore/Library/TemporaryLibrary.h"
#include "bench/GeneratedLibrary.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace varnic {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const Date now = parseDate("2026-03-14T09:26:53.589Z");

std::vector<std::string> titles(const std::vector<Note>& notes) {
    std::vector<std::string> found;
    found.reserve(notes.size());
    for (const Note& note : notes) {
        found.push_back(note.title);
    }
    return found;
}

unsigned modeOf(const fs::path& entry) {
    struct stat status{};
    EXPECT_EQ(::stat(entry.c_str(), &status), 0);
    return status.st_mode & 0777U;
}

void setChangeTime(const fs::path& entry, Date date) {
    const auto second = std::chrono::floor<std::chrono::seconds>(date);
    const timespec time{.tv_sec = second.time_since_epoch().count(),
                        .tv_nsec = std::chrono::nanoseconds(date - second).count()};
    const std::array times{time, time};
    ASSERT_EQ(::utimensat(AT_FDCWD, entry.c_str(), times.data(), AT_SYMLINK_NOFOLLOW), 0);
}

TEST(LibraryStore, new_makesPrivateFoldersButNoTrash) {
    const TemporaryLibrary library;
    EXPECT_THAT(TemporaryLibrary::names(library.store.root()), ElementsAre("audio", "notes"));
    EXPECT_EQ(modeOf(library.store.notesDir()), 0700U);
    EXPECT_EQ(modeOf(library.store.root()), 0700U);
}

TEST(LibraryStore, save_writesTheEncodedBytesForTheOwnerOnly) {
    TemporaryLibrary library;
    const Note note(now, "Plan");
    library.store.save(note);
    const fs::path file = library.store.url(note.id);
    EXPECT_EQ(file, library.store.root() / "notes" / (note.id.text() + ".json"));
    EXPECT_EQ(TemporaryLibrary::read(file), LibraryStore::encoded(note));
    EXPECT_EQ(modeOf(file), 0600U);
    library.store.save(note);
    EXPECT_EQ(TemporaryLibrary::read(file), LibraryStore::encoded(note));
    EXPECT_EQ(library.store.load(note.id, now), note);
    EXPECT_EQ(TemporaryLibrary::names(library.store.notesDir()).size(), 1U);
}

TEST(LibraryStore, loadAll_sortsNewestFirstAndEqualOnesByFileName) {
    TemporaryLibrary library;
    for (const auto& [id, title, date] : std::vector<std::tuple<std::string, std::string, Date>>{
             {"30000000-0000-4000-8000-000000000000", "third", now},
             {"10000000-0000-4000-8000-000000000000", "second", now},
             {"20000000-0000-4000-8000-000000000000", "newest", now + 1ms},
             {"00000000-0000-4000-8000-000000000000", "oldest", now - 24h}}) {
        library.store.save(Note(Uuid::parse(id).value(), title, date, {}));
    }
    EXPECT_THAT(titles(library.store.loadAll(now)), ElementsAre("newest", "second", "third", "oldest"));
}

TEST(LibraryStore, loadAll_ofALargeLibraryGivesEveryNoteAsItWas) {
    TemporaryLibrary library;
    GeneratedLibrary::write(library.store.root(), 300, 1'500'000);
    std::vector<Note> expected = GeneratedLibrary::notes(300, 1'500'000);
    std::ranges::sort(expected, std::ranges::greater{}, &Note::created);
    TemporaryLibrary::write(library.store.notesDir() / "x.json", "{");
    EXPECT_EQ(library.store.loadAll(now), expected);
    EXPECT_EQ(library.store.unreadable().size(), 1U);
}

TEST(LibraryStore, loadAll_reportsDamagedFilesAndLeavesThem) {
    TemporaryLibrary library;
    const fs::path notes = library.store.notesDir();
    library.store.save(Note(now, "good"));
    TemporaryLibrary::write(notes / "readme.txt", "{");
    TemporaryLibrary::write(notes / "B.JSON", "{");
    TemporaryLibrary::write(notes / "x.json", "{");
    TemporaryLibrary::write(notes / "empty.json", "");
    TemporaryLibrary::write(notes / "date.json",
                            R"({"id":"1B4E28BA-2FA1-11D2-883F-0016D3CCA427","created":"yesterday"})");
    fs::create_directory(notes / "folder.json");
    fs::create_symlink("nowhere", notes / "link.json");
    ASSERT_EQ(::mkfifo((notes / "pipe.json").c_str(), 0600), 0);
    EXPECT_THAT(titles(library.store.loadAll(now)), ElementsAre("good"));
    std::vector<std::string> reported;
    for (const UnreadableFile& file : library.store.unreadable()) {
        reported.push_back(file.path.filename().string() + ": " + file.reason);
    }
    EXPECT_THAT(reported, ElementsAre("date.json: Bad date yesterday", "empty.json: There is no text.",
                                      HasSubstr("a folder stands where a file should be"),
                                      HasSubstr("there is no such file or folder"), HasSubstr("pipe.json"),
                                      HasSubstr("x.json: The text is not JSON")));
    EXPECT_EQ(TemporaryLibrary::read(notes / "x.json"), "{");
    fs::remove_all(notes);
    EXPECT_THAT(library.store.loadAll(now), IsEmpty());
    EXPECT_THAT(library.store.unreadable(), IsEmpty());
}

TEST(LibraryStore, loadAll_ofTwoFilesWithOneIdKeepsTheOneNamedByIt) {
    TemporaryLibrary library;
    const Note own(now, "own");
    Note copy = own;
    copy.title = "copy";
    for (const std::string name : {"!copy.json", "~copy.json"}) {
        TemporaryLibrary::write(library.store.notesDir() / name, LibraryStore::encoded(copy));
    }
    EXPECT_THAT(titles(library.store.loadAll(now)), ElementsAre("copy"));
    EXPECT_EQ(library.store.unreadable().size(), 1U);
    library.store.save(own);
    EXPECT_THAT(titles(library.store.loadAll(now)), ElementsAre("own"));
    ASSERT_EQ(library.store.unreadable().size(), 2U);
    EXPECT_THAT(library.store.unreadable().front().reason, HasSubstr(own.id.text() + ".json"));
}

TEST(LibraryStore, save_setsADamagedFileInItsPlaceAside) {
    TemporaryLibrary library;
    const Note note(now, "copy");
    const fs::path file = library.store.url(note.id);
    TemporaryLibrary::write(file, "{damaged");
    TemporaryLibrary::write(library.store.notesDir() / "copy.json", LibraryStore::encoded(note));
    EXPECT_THAT(library.store.loadAll(now), ElementsAre(note));
    library.store.save(note);
    EXPECT_EQ(TemporaryLibrary::read(file.string() + ".damaged"), "{damaged");
    EXPECT_EQ(library.store.load(note.id, now), note);
}

TEST(LibraryStore, removeAndRestore_moveWhatThereIs) {
    for (const bool hasNote : {true, false}) {
        for (const bool hasAudio : {true, false}) {
            TemporaryLibrary library;
            const Note note(now, "Plan");
            const fs::path trash = library.store.deletedDir() / note.id.text();
            if (hasNote) {
                library.store.save(note);
            }
            if (hasAudio) {
                TemporaryLibrary::write(library.store.audioFolder(note.id) / "you.m4a", "sound");
            }
            library.store.remove(note.id);
            EXPECT_EQ(modeOf(trash), 0700U);
            EXPECT_EQ(fs::exists(trash / "note.json"), hasNote);
            EXPECT_EQ(fs::exists(trash / "audio" / "you.m4a"), hasAudio);
            EXPECT_FALSE(fs::exists(library.store.url(note.id)));
            EXPECT_FALSE(fs::exists(library.store.audioFolder(note.id)));
            EXPECT_EQ(library.store.restore(note.id, now).has_value(), hasNote);
            EXPECT_EQ(library.store.audioSize(note.id), hasAudio ? 5 : 0);
            EXPECT_FALSE(fs::exists(trash));
        }
    }
}

TEST(LibraryStore, removeTwice_replacesTheOlderEntry) {
    TemporaryLibrary library;
    Note note(now, "older");
    library.store.save(note);
    TemporaryLibrary::write(library.store.audioFolder(note.id) / "you.m4a", "sound");
    library.store.remove(note.id);
    note.title = "newer";
    library.store.save(note);
    library.store.remove(note.id);
    EXPECT_THAT(TemporaryLibrary::names(library.store.deletedDir() / note.id.text()), ElementsAre("note.json"));
    EXPECT_EQ(library.store.restore(note.id, now), note);
}

TEST(LibraryStore, restore_overALiveNoteThrowsAndLosesNeither) {
    TemporaryLibrary library;
    Note note(now, "deleted");
    library.store.save(note);
    library.store.remove(note.id);
    note.title = "live";
    library.store.save(note);
    EXPECT_THROW(library.store.restore(note.id, now), LibraryError);
    EXPECT_EQ(library.store.load(note.id, now), note);
    EXPECT_THAT(TemporaryLibrary::read(library.store.deletedDir() / note.id.text() / "note.json"),
                HasSubstr("deleted"));
}

TEST(LibraryStore, purgeDeleted_removesOnlyWhatIsOlderThanTheLimit) {
    TemporaryLibrary library;
    const fs::path trash = library.store.deletedDir();
    for (const auto& [name, age] : std::vector<std::pair<std::string, std::chrono::milliseconds>>{
             {"older", 30 * 24h + 1s}, {"justOlder", 30 * 24h + 1ms}, {"atLimit", 30 * 24h}, {"newer", 29 * 24h}}) {
        TemporaryLibrary::write(trash / name / "note.json", "{}");
        setChangeTime(trash / name, now - age);
    }
    library.store.purgeDeleted(30, now);
    EXPECT_THAT(TemporaryLibrary::names(trash), ElementsAre("atLimit", "newer"));
}

TEST(LibraryStore, purgeDeleted_removesTheRemainsOfACrashedWriteOnly) {
    TemporaryLibrary library;
    const fs::path notes = library.store.notesDir();
    for (const std::string name : {".1.json.abcdef.tmp", "mine.tmp", ".hidden", "x.json"}) {
        TemporaryLibrary::write(notes / name, "{");
        setChangeTime(notes / name, now - 25h);
    }
    TemporaryLibrary::write(notes / ".2.json.abcdef.tmp", "{");
    setChangeTime(notes / ".2.json.abcdef.tmp", now);
    library.store.loadAll(now);
    EXPECT_EQ(library.store.unreadable().size(), 1U);
    library.store.purgeDeleted(30, now);
    EXPECT_THAT(TemporaryLibrary::names(notes), ElementsAre(".2.json.abcdef.tmp", ".hidden", "mine.tmp", "x.json"));
}

TEST(LibraryStore, audio_isMeasuredAtItsTopLevelAndRemoved) {
    TemporaryLibrary library;
    const Note note(now);
    const fs::path audio = library.store.audioFolder(note.id);
    EXPECT_EQ(library.store.audioSize(note.id), 0);
    TemporaryLibrary::write(audio / "you.m4a", std::string(1000, 'a'));
    TemporaryLibrary::write(audio / "them.m4a", std::string(500, 'a'));
    TemporaryLibrary::write(audio / "deeper" / "more.m4a", std::string(9000, 'a'));
    fs::create_symlink("nowhere", audio / "link");
    EXPECT_EQ(library.store.audioSize(note.id), 1500);
    library.store.save(note);
    library.store.removeAudio(note.id);
    EXPECT_FALSE(fs::exists(audio));
    EXPECT_TRUE(library.store.load(note.id, now));
    library.store.removeAudio(note.id);
}

} // namespace
} // namespace varnic
