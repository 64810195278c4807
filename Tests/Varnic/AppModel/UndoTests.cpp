#include "Varnic/AppModel/ScratchModel.h"
#include "VarnicCore/Editor/NoteEditor.h"

#include <gmock/gmock.h>

#include <fstream>

namespace varnic {
namespace {

using testing::ElementsAre;

class UndoTests : public testing::Test {
protected:
    UndoTests() {
        Block todo;
        todo.kind = BlockKind::todo;
        id = model->newNote("Tour", {todo});
        block = todo.id;
        model->flushSaves();
    }

    std::optional<TextPlace> type(const std::string& text) {
        const std::size_t offset = first().text.size();
        return model->edit(id, {.kind = EditKind::typing, .caret = TextPlace{block, offset}}, [&](Note& note) {
            NoteEditor::update(block, note, currentDate(), [&](Block& typed) { typed.text += text; });
            return TextPlace{block, offset + text.size()};
        });
    }

    [[nodiscard]] const Block& first() { return model->note(id)->blocks.front(); }

    ScratchModel model;
    Uuid id;
    Uuid block;
};

TEST_F(UndoTests, undoAndRedo_surviveASaveAndAnotherNote) {
    EXPECT_EQ(type("ink"), (TextPlace{block, 3}));
    model->toggleTodo(id, block);
    model->flushSaves();
    const Uuid other = model->newNote("Other");
    EXPECT_FALSE(model->canUndo(other));
    model->selection = id;
    EXPECT_EQ(model->undo(id), std::nullopt); // a tick moves no caret
    EXPECT_FALSE(first().done);
    EXPECT_EQ(first().text, "ink");
    EXPECT_EQ(model->undo(id), (TextPlace{block, 0}));
    EXPECT_EQ(first().text, "");
    EXPECT_FALSE(model->canUndo(id));
    EXPECT_EQ(model->redo(id), (TextPlace{block, 3}));
    EXPECT_TRUE(model->canRedo(id));
    model->flushSaves();
    const std::vector<Note> stored = model.stored();
    const auto saved = std::ranges::find(stored, id, &Note::id);
    ASSERT_NE(saved, stored.end());
    EXPECT_EQ(saved->blocks.front().text, "ink");
}

TEST_F(UndoTests, undo_leavesWhatOtherFlowsAndProgramsChanged) {
    model.restart();
    model.load();
    type("ink");
    model->update(id, true, [](Note& note) {
        NoteEditor::apply({.title = "Digest", .summary = {"Said"}}, note, true, currentDate());
    });
    model->flushSaves();
    Note theirs = *model->note(id);
    theirs.blocks.emplace_back().text = "theirs";
    std::ofstream(model.notes() / (id.text() + ".json")) << LibraryStore::encoded(theirs);
    ASSERT_TRUE(waitUntil([&] { return model->note(id)->blocks.back().text == "theirs"; }));
    model->undo(id);
    theirs.blocks.front().text = "";
    EXPECT_EQ(model->note(id)->blocks, theirs.blocks);
    EXPECT_EQ(model->note(id)->title, "Digest");
}

TEST_F(UndoTests, history_goesWithItsNote) {
    type("ink");
    model->remove(id);
    EXPECT_FALSE(model->canUndo(id));
    EXPECT_EQ(model->undo(id), std::nullopt);
    EXPECT_EQ(model->edit(id, {}, [this](Note& /*note*/) { return TextPlace{block, 1}; }), std::nullopt);
    EXPECT_FALSE(model->canUndo(id));
}

TEST_F(UndoTests, unchangedNote_hasNothingToUndo) {
    const Date modified = model->note(id)->modified;
    model->edit(id, {}, [](Note& /*note*/) { return std::nullopt; });
    EXPECT_FALSE(model->canUndo(id));
    EXPECT_EQ(model->note(id)->modified, modified);
    EXPECT_THAT(model->unsavedNotes(), ElementsAre());
}

} // namespace
} // namespace varnic
