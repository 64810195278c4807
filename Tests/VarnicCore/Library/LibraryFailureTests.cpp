#include "VarnicCore/FileSizeLimit.h"
#include "VarnicCore/Files/AtomicWrite.h"
#include "VarnicCore/Files/LibraryError.h"
#include "VarnicCore/Library/LibraryStore.h"
#include "VarnicCore/Library/TemporaryLibrary.h"
#include "VarnicCore/Pipeline/Recovery.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace varnic {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

const Date now = parseDate("2026-03-14T09:26:53.589Z");

/// The error of the work; fails the test when there is none.
template <class Work>
LibraryError errorOf(Work work) {
    try {
        work();
    } catch (const LibraryError& error) {
        return error;
    }
    ADD_FAILURE() << "no error";
    return {"tried", "", {}};
}

TEST(LibraryFailure, saveThatRunsOutOfSpace_leavesTheOldFileAndNoOther) {
    TemporaryLibrary library;
    Note note(now, "old");
    library.store.save(note);
    const std::string before = TemporaryLibrary::read(library.store.url(note.id));
    note.blocks.front().text = std::string(100'000, 'x');
    std::optional<LibraryError> error;
    {
        const FileSizeLimit limit(4096);
        error = errorOf([&] { library.store.save(note); });
    }
    EXPECT_EQ(error->code(), std::errc::file_too_large);
    EXPECT_THAT(error->what(), HasSubstr(".json” couldn’t be written: the file is too large."));
    EXPECT_EQ(TemporaryLibrary::read(library.store.url(note.id)), before);
    EXPECT_EQ(TemporaryLibrary::names(library.store.notesDir()).size(), 1U);
    library.store.save(note);
    EXPECT_EQ(library.store.load(note.id, now), note);
}

TEST(LibraryFailure, copyThatRunsOutOfSpace_saysSoAndLeavesNothing) {
    const TemporaryLibrary folders;
    const fs::path from = folders.folder() / "from.wav";
    const fs::path copies = folders.folder() / "copies";
    TemporaryLibrary::write(from, std::string(100'000, 'x'));
    fs::create_directory(copies);
    std::optional<LibraryError> error;
    {
        const FileSizeLimit limit(4096);
        error = errorOf([&] { AtomicWrite::copy(from, copies / "them.wav"); });
    }
    EXPECT_EQ(error->code(), std::errc::file_too_large);
    EXPECT_TRUE(fs::is_empty(copies));
    EXPECT_THAT(errorOf([&] { AtomicWrite::copy(copies, folders.folder() / "folder.wav"); }).what(),
                HasSubstr("copies” couldn’t be read: a folder stands where a file should be"));
    AtomicWrite::copy(from, copies / "them.wav");
    EXPECT_EQ(TemporaryLibrary::read(copies / "them.wav"), TemporaryLibrary::read(from));
    EXPECT_EQ(fs::status(copies / "them.wav").permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST(LibraryFailure, rootBelowAFile_isToldBySavingAndRemoving) {
    const TemporaryLibrary library;
    TemporaryLibrary::write(library.folder() / "file", "");
    LibraryStore store(library.folder() / "file" / "Library");
    const Note note(now);
    const LibraryError saving = errorOf([&] { store.save(note); });
    EXPECT_EQ(saving.code(), std::errc::not_a_directory);
    EXPECT_THAT(saving.what(), HasSubstr("a file stands where a folder should be"));
    EXPECT_EQ(errorOf([&] { store.remove(note.id); }).code(), std::errc::not_a_directory);
    EXPECT_TRUE(store.loadAll(now).empty());
    ASSERT_TRUE(store.listingProblem());
    EXPECT_THAT(*store.listingProblem(), HasSubstr("couldn’t be read: a file stands where a folder should be."));
    EXPECT_THROW(Recovery::find(store), LibraryError);
    EXPECT_EQ(store.load(note.id, now), std::nullopt);
    EXPECT_EQ(store.restore(note.id, now), std::nullopt);
    store.purgeDeleted(30, now);
    EXPECT_EQ(store.audioSize(note.id), 0);
}

TEST(LibraryFailure, diskThatIsTakenAway_getsNoLibraryInItsPlace) {
    const TemporaryLibrary folders;
    const fs::path onOneDisk = folders.folder() / "disk";
    const fs::path onAnother = fs::path("/dev/shm") / onOneDisk.parent_path().filename();
    const fs::path place = folders.folder() / "place";
    fs::create_directories(onOneDisk);
    fs::create_directories(onAnother);
    fs::create_directory_symlink(onOneDisk, place);
    LibraryStore store(place);
    const Note note(now);
    fs::remove_all(onOneDisk / "notes");
    store.save(note);
    fs::remove(place);
    fs::create_directory_symlink(onAnother, place);
    EXPECT_EQ(errorOf([&] { store.save(note); }).code(), std::errc::no_such_device);
    EXPECT_TRUE(fs::is_empty(onAnother));
    fs::remove_all(onAnother);
}

TEST(LibraryFailure, folderInTheNotesPlace_isToldAndNoTemporaryFileStays) {
    TemporaryLibrary library;
    const Note note(now);
    fs::create_directory(library.store.url(note.id));
    EXPECT_EQ(errorOf([&] { library.store.save(note); }).code(), std::errc::is_a_directory);
    EXPECT_EQ(TemporaryLibrary::names(library.store.notesDir()).size(), 1U);
}

TEST(LibraryFailure, fileInTheTrashsPlace_leavesTheNoteWhereItIs) {
    TemporaryLibrary library;
    const Note note(now, "Plan");
    library.store.save(note);
    TemporaryLibrary::write(library.store.deletedDir(), "");
    EXPECT_EQ(errorOf([&] { library.store.remove(note.id); }).code(), std::errc::not_a_directory);
    EXPECT_EQ(library.store.load(note.id, now), note);
}

} // namespace
} // namespace varnic
