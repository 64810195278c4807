#include "Varnic/AppModel/ScratchModel.h"
#include "VarnicCore/Audio/AudioMix.h"
#include "VarnicCore/FileSizeLimit.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <iterator>

namespace varnic {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

std::vector<std::string> titles(const std::vector<const Note*>& notes) {
    std::vector<std::string> result;
    for (const Note* note : notes) {
        result.push_back(note->title);
    }
    return result;
}

class AppModelTests : public testing::Test {
protected:
    [[nodiscard]] std::string toastText() { return model->toast.value() ? model->toast.value()->text : ""; }

    ScratchModel model;
};

TEST_F(AppModelTests, load_unreadableFiles_loadsTheOthersAndSaysSo) {
    model->newNote("Kept");
    model->flushSaves();
    for (const auto& [file, problem] : std::vector<std::pair<std::string, std::string>>{
             {"bad.json", "1 note file couldn’t be read and was left as is."},
             {"worse.json", "2 note files couldn’t be read and were left as is."}}) {
        std::ofstream(model.notes() / file) << "{";
        model.restart();
        model.load();
        EXPECT_EQ(model->loadProblem.value(), problem);
        EXPECT_THAT(titles(model->visibleNotes()), ElementsAre("Kept"));
        EXPECT_EQ(model->selection.value(), model->notes().front().id);
    }
}

TEST_F(AppModelTests, update_quickEdits_areWrittenTogetherAfterAPause) {
    const Uuid id = model->newNote("A");
    model->flushSaves();
    const auto file = model.folder() / "Library" / "notes" / (id.text() + ".json");
    const auto written = fs::last_write_time(file);
    int changes = 0;
    QObject::connect(&*model, &AppModel::notesChanged, [&changes] { ++changes; });
    for (const char* title : {"AB", "ABC", "ABC"}) {
        model->update(id, false, [title](Note& note) { note.title = title; });
    }
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(fs::last_write_time(file), written);
    EXPECT_TRUE(waitUntil([&] { return fs::last_write_time(file) != written; }));
    EXPECT_EQ(model.stored().front().title, "ABC");
}

TEST_F(AppModelTests, save_fails_saysSoAndKeepsTheEdit) {
    const Uuid id = model->newNote("A");
    model->flushSaves();
    fs::remove_all(model.folder() / "Library");
    std::ofstream(model.folder() / "Library") << "in the way";
    model->update(id, true, [](Note& note) { note.title = "B"; });
    EXPECT_TRUE(waitUntil([&] { return toastText() == "Couldn’t save “B”"; }));
    fs::remove(model.folder() / "Library");
    fs::create_directories(model.folder() / "Library" / "notes");
    model->update(id, true, [](Note& note) { note.title = "C"; });
    EXPECT_EQ(model.stored().front().title, "C");
}

TEST_F(AppModelTests, flushSaves_writesWhatFailedBefore) {
    const Uuid id = model->newNote("A");
    model->flushSaves();
    model.takeNotesAway();
    model->update(id, true, [](Note& note) { note.title = "B"; });
    ASSERT_TRUE(waitUntil([&] { return model->isUnreadable.value(); })) << "which the window shows";
    EXPECT_TRUE(model->saveProblem(id).has_value() && model->isSpared(id));
    EXPECT_THAT(model->unsavedNotes(), ElementsAre(id));
    model->flushSaves();
    EXPECT_THAT(model->unsavedNotes(), ElementsAre(id));
    model.putNotesBack();
    model->flushSaves();
    EXPECT_THAT(model->unsavedNotes(), IsEmpty());
    EXPECT_EQ(LibraryStore(model.folder() / "Library").load(id, currentDate())->title, "B");
    EXPECT_FALSE(fs::exists(model.folder() / "Unsaved"));
}

TEST_F(AppModelTests, endWithoutALibrary_isMadeUpForAtTheNextStart) {
    const Uuid id = model->newNote("A");
    model->flushSaves();
    model.takeNotesAway();
    model->update(id, false, [](Note& note) { note.title = "B"; });
    const Uuid fresh = model->newNote("Fresh");
    model.restart();
    model.putNotesBack();
    model.load();
    ASSERT_THAT(model->notes(), SizeIs(2));
    EXPECT_EQ(model->note(id)->title, "B");
    EXPECT_EQ(model->note(fresh)->title, "Fresh");
    EXPECT_FALSE(fs::exists(model.folder() / "Unsaved"));
}

TEST_F(AppModelTests, endWithoutALibrary_nextStartCannotWriteYet_keepsWhatIsEditedThenToo) {
    const Uuid id = model->newNote("A");
    model->flushSaves();
    model.takeNotesAway();
    model->update(id, true, [](Note& note) { note.title = "B"; });
    model.restart();
    model.putNotesBack();
    {
        const FileSizeLimit full(0);
        model.load();
    }
    ASSERT_EQ(model->note(id)->title, "A");
    model->update(id, true, [](Note& note) { note.title = "C"; });
    model.restart();
    model.load();
    std::vector<const Note*> both;
    std::ranges::transform(model->notes(), std::back_inserter(both), [](const Note& note) { return &note; });
    EXPECT_THAT(titles(both), UnorderedElementsAre("C", "B (other copy)"));
    EXPECT_FALSE(fs::exists(model.folder() / "Unsaved"));
}

TEST_F(AppModelTests, load_libraryThatCannotBeLookedInto_saysSoUntilItCan) {
    const Uuid id = model->newNote("A");
    model.restart();
    model.takeNotesAway();
    model.load();
    EXPECT_TRUE(model->isUnreadable.value());
    EXPECT_THAT(*model->loadProblem.value(), testing::HasSubstr("couldn’t be read"));
    const Uuid fresh = model->newNote("Fresh");
    model->flushSaves();
    EXPECT_THAT(model->unsavedNotes(), ElementsAre(fresh));
    model.load();
    EXPECT_TRUE(model->isUnreadable.value());
    model.putNotesBack();
    model.load();
    EXPECT_TRUE(waitUntil([&] { return !model->isUnreadable.value() && model->notes().size() == 2; }));
    EXPECT_FALSE(model->loadProblem.value());
    EXPECT_NE(model->note(id), nullptr);
    EXPECT_TRUE(waitUntil([&] { return model->unsavedNotes().empty(); })) << "saved without being asked";
}

TEST_F(AppModelTests, load_libraryThatCannotBeLookedIntoYet_recoversOnceItCan) {
    for (const bool triesAgain : {false, true}) {
        const Uuid id = Uuid::random();
        fs::create_directories(model->audioFolder(id));
        AudioMix::render({}, 2, model->audioFolder(id) / "them.m4a", true);
        model.takeNotesAway();
        model.restart();
        model.load();
        ASSERT_TRUE(model->isUnreadable.value());
        model.putNotesBack();
        if (triesAgain) {
            model.load();
        }
        EXPECT_TRUE(waitUntil([&] { return model->note(id) != nullptr; })) << triesAgain;
    }
}

TEST_F(AppModelTests, newNote_elsewhere_movesToTheNotes) {
    model->section = LibrarySection::todos;
    model->query = std::string("x");
    const Uuid id = model->newNote();
    EXPECT_EQ(model->section.value(), LibrarySection::notes);
    EXPECT_EQ(model->query.value(), "");
    EXPECT_EQ(model->selection.value(), id);
    EXPECT_EQ(model->focusBlock.value(), model->note(id)->blocks.front().id);
    model->section = LibrarySection::all;
    model->newNote();
    EXPECT_EQ(model->section.value(), LibrarySection::all);
}

TEST_F(AppModelTests, remove_thenUndo_bringsTheLastEditBack) {
    const Uuid first = model->newNote("First");
    const Uuid second = model->newNote("Second");
    const std::vector<Uuid> order{model->visibleNotes()[0]->id, model->visibleNotes()[1]->id};
    model->selection = order[1];
    model->update(order[1], false, [](Note& note) { note.blocks.front().text = "unsaved"; });
    model->remove(order[1]);
    EXPECT_EQ(model->selection.value(), order[0]);
    EXPECT_EQ(toastText(), fmt::format("Deleted “{}”", order[1] == first ? "First" : "Second"));
    EXPECT_THAT(model.stored(), SizeIs(1));
    model->toast.value()->undo();
    ASSERT_TRUE(waitUntil([&] { return model->notes().size() == 2; }));
    EXPECT_EQ(model->selection.value(), order[1]);
    EXPECT_EQ(model->note(order[1])->blocks.front().text, "unsaved");
    EXPECT_THAT(model.stored(), SizeIs(2));

    model->remove(first);
    model->remove(second);
    EXPECT_EQ(model->selection.value(), std::nullopt);
}

TEST_F(AppModelTests, demo_nothingIsWritten) {
    model->isDemo = true;
    const Uuid id = model->newNote("Demo");
    model->update(id, true, [](Note& note) { note.title = "Shown"; });
    EXPECT_THAT(model.stored(), IsEmpty());
    model->remove(id);
    EXPECT_THAT(model->notes(), IsEmpty());
}

} // namespace
} // namespace varnic
