#include "Varnic/AppModel/CallImport.h"
#include "Varnic/AppModel/ScratchModel.h"
#include "VarnicCore/Audio/SoundFiles.h"

#include <gmock/gmock.h>

#include <fstream>

namespace varnic {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::UnorderedElementsAre;
using testing::UnorderedElementsAreArray;

/// A loaded library with one note, on which another program works too.
class ForeignChangesTests : public testing::Test {
protected:
    ForeignChangesTests() {
        id = model->newNote("Kept");
        model->flushSaves();
        model.restart();
        model.load();
    }

    [[nodiscard]] fs::path file(const Uuid& note) const {
        return model.folder() / "Library" / "notes" / (note.text() + ".json");
    }

    [[nodiscard]] Note titled(const std::string& title) {
        Note changed = *model->note(id);
        changed.title = title;
        return changed;
    }

    /// As an editor does that doesn't replace the file but writes into it.
    void writeInPlace(const Note& note) const { std::ofstream(file(note.id)) << LibraryStore::encoded(note); }

    [[nodiscard]] std::vector<std::string> titles() {
        std::vector<std::string> result;
        for (const Note* note : model->visibleNotes()) {
            result.push_back(note->title);
        }
        return result;
    }

    ScratchModel model;
    Uuid id;
};

TEST_F(ForeignChangesTests, change_ofAnUnchangedNote_isTaken) {
    writeInPlace(titled("Theirs"));
    EXPECT_TRUE(waitUntil([&] { return model->note(id)->title == "Theirs"; }));
    model->update(id, true, [](Note& note) { note.title += ", then mine"; });
    EXPECT_THAT(model.stored(), ElementsAre(titled("Theirs, then mine")));
}

TEST_F(ForeignChangesTests, change_ofAnEditedNote_keepsBoth) {
    model->update(id, false, [](Note& note) { note.title = "Mine"; });
    writeInPlace(titled("Theirs"));
    ASSERT_TRUE(waitUntil([&] { return model->notes().size() == 2; }));
    EXPECT_THAT(titles(), UnorderedElementsAre("Mine", "Theirs (other copy)"));
    EXPECT_EQ(model->toast.value()->text, "“Mine” was changed elsewhere too — both are kept");
    EXPECT_THAT(model.stored(), UnorderedElementsAreArray(model->notes()));
}

TEST_F(ForeignChangesTests, changesInDifferentPlaces_comeTogether) {
    for (int round = 0; round < 2; ++round) { // of a note that was only read, and of one that was saved
        const std::string theirs = "Theirs " + std::to_string(round);
        const std::string mine = "mine " + std::to_string(round);
        const Note their = titled(theirs);
        model->update(id, false, [&](Note& note) { note.blocks.push_back(Block{.text = mine}); });
        writeInPlace(their);
        model->flushSaves();
        ASSERT_TRUE(waitUntil([&] { return model->note(id)->title == theirs; }));
        EXPECT_EQ(model->note(id)->blocks.back().text, mine);
        EXPECT_THAT(model.stored(), ElementsAre(*model->note(id)));
    }
}

TEST_F(ForeignChangesTests, newFile_appears_andRemovedFile_goes) {
    const Note other(currentDate(), "Other");
    writeInPlace(other);
    ASSERT_TRUE(waitUntil([&] { return model->notes().size() == 2; }));
    EXPECT_EQ(model->selection.value(), id);
    fs::remove(file(id));
    ASSERT_TRUE(waitUntil([&] { return model->notes().size() == 1; }));
    EXPECT_THAT(titles(), ElementsAre("Other"));
    EXPECT_EQ(model->selection.value(), other.id);
}

TEST_F(ForeignChangesTests, removedFile_ofAnEditedNote_comesBack) {
    LibraryStore store(model.folder() / "Library");
    model->update(id, false, [](Note& note) { note.title = "Mine"; });
    store.remove(id);
    EXPECT_TRUE(waitUntil([&] { return fs::exists(file(id)); }));
    EXPECT_THAT(titles(), ElementsAre("Mine"));
}

TEST_F(ForeignChangesTests, halfWrittenFile_isLeftAloneUntilItIsWhole) {
    const std::string whole = LibraryStore::encoded(titled("Theirs"));
    std::ofstream(file(id)) << whole.substr(0, whole.size() / 2);
    writeInPlace(Note(currentDate(), "Later"));
    ASSERT_TRUE(waitUntil([&] { return model->notes().size() == 2; }));
    EXPECT_EQ(model->note(id)->title, "Kept");
    std::ofstream(file(id)) << whole;
    EXPECT_TRUE(waitUntil([&] { return model->note(id)->title == "Theirs"; }));
}

TEST_F(ForeignChangesTests, ownWrites_areNoNews) {
    int changes = 0;
    const Uuid last = model->newNote("Last");
    QObject::connect(&*model, &AppModel::notesChanged, [&changes] { ++changes; });
    for (const char* title : {"A", "B", "C"}) {
        model->update(id, true, [title](Note& note) { note.title = title; });
        model->flushSaves();
    }
    model->remove(last);
    EXPECT_EQ(changes, 4);
    writeInPlace(Note(currentDate(), "Theirs"));
    ASSERT_TRUE(waitUntil([&] { return model->notes().size() == 2; }));
    EXPECT_EQ(changes, 5);
}

TEST_F(ForeignChangesTests, folderThatIsReplaced_isFollowedOn) {
    const fs::path notes = model.folder() / "Library" / "notes";
    for (const bool isAwayForAWhile : {false, true}) {
        const fs::path away = model.folder() / (isAwayForAWhile ? "first" : "second");
        fs::rename(notes, away);
        if (isAwayForAWhile) {
            ASSERT_TRUE(waitUntil([&] { return model->isUnreadable.value(); }));
            EXPECT_THAT(model->notes(), testing::SizeIs(1)) << "which are not gone";
        }
        fs::copy(away, notes);
        const std::string title = isAwayForAWhile ? "After a while" : "At once";
        writeInPlace(titled(title));
        EXPECT_TRUE(waitUntil([&] { return model->note(id)->title == title; }));
        EXPECT_TRUE(waitUntil([&] { return !model->isUnreadable.value(); }));
    }
    writeInPlace(titled("Watched"));
    EXPECT_TRUE(waitUntil([&] { return model->note(id)->title == "Watched"; }));
}

TEST_F(ForeignChangesTests, libraryThatIsMovedAway_getsNoOtherInItsPlace) {
    const fs::path library = model.folder() / "Library";
    const Uuid doomed = model->newNote("Doomed");
    model->flushSaves();
    fs::rename(library, model.folder() / "away");
    ASSERT_TRUE(waitUntil([&] { return model->isUnreadable.value(); }));
    model->update(id, true, [](Note& note) { note.title = "Mine"; });
    model->remove(doomed);
    ASSERT_TRUE(waitUntil([&] { return model->isSpared(id); }));
    EXPECT_EQ(QCoro::waitFor(model->importCall({.files = {.them = SoundFiles().tone("Board.wav", 1)}})), std::nullopt);
    EXPECT_EQ(model->toast.value()->text, *model->loadProblem.value());
    EXPECT_FALSE(fs::exists(library));
    fs::rename(model.folder() / "away", library);
    ASSERT_TRUE(waitUntil([&] { return !model->isUnreadable.value(); }));
    EXPECT_TRUE(waitUntil([&] { return LibraryStore(library).load(id, currentDate())->title == "Mine"; }));
}

TEST_F(ForeignChangesTests, conflictCopyOfASynchroniser_becomesANote) {
    const std::string name = id.text() + ".sync-conflict-20260314-092653-ABCDEFG.json";
    const fs::path conflict = file(id).parent_path() / name;
    std::ofstream(conflict) << LibraryStore::encoded(titled("Theirs"));
    ASSERT_TRUE(waitUntil([&] { return model->notes().size() == 2; }));
    EXPECT_THAT(titles(), UnorderedElementsAre("Kept", "Theirs (other copy)"));
    std::ofstream(conflict) << LibraryStore::encoded(titled("Again"));
    model.restart();
    model.load();
    EXPECT_THAT(titles(), UnorderedElementsAre("Kept", "Theirs (other copy)", "Again (other copy)"));
    EXPECT_FALSE(model->loadProblem.value());
}

TEST_F(ForeignChangesTests, restore_nothingInTheTrash_isSavedAgain) {
    const Note before = *model->note(id);
    model->remove(id);
    model->flushSaves();
    fs::remove_all(model.folder() / "Library" / "Deleted");
    QCoro::waitFor(model->restore(before));
    EXPECT_THAT(model.stored(), ElementsAre(before));
}

} // namespace
} // namespace varnic
