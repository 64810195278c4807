#include "VarnicCore/Editor/NoteEditor.h"

#include "VarnicCore/Editor/BlockNotes.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace varnic {
namespace {

using namespace blockNotes;
using testing::ElementsAre;

TEST(NoteEditor, insert_goesBehindTheNamedBlockOrToTheEnd) {
    Note note = noteOf({block(BlockKind::heading, "A"), block(BlockKind::heading, "B")});
    NoteEditor::insert(block(BlockKind::bullet, "1"), note.blocks[0].id, note, later);
    NoteEditor::insert(block(BlockKind::bullet, "2"), Uuid::random(), note, later);
    NoteEditor::insert(block(BlockKind::bullet, "3"), std::nullopt, note, later);
    EXPECT_THAT(lines(note), ElementsAre("heading: A", "bullet: 1", "heading: B", "bullet: 2", "bullet: 3"));
    EXPECT_EQ(note.modified, later);
}

TEST(NoteEditor, remove_focusesTheBlockBeforeAndNeverEmptiesTheNote) {
    Note note = noteOf({block(BlockKind::heading, "A"), block(BlockKind::bullet, "B"), block(BlockKind::bullet, "C")});
    EXPECT_EQ(NoteEditor::remove(note.blocks[2].id, note, later), note.blocks[1].id);
    EXPECT_EQ(NoteEditor::remove(note.blocks[0].id, note, later), note.blocks[0].id);
    EXPECT_EQ(NoteEditor::remove(Uuid::random(), note, later), std::nullopt);
    const Uuid last = note.blocks[0].id;
    const auto focus = NoteEditor::remove(last, note, later);
    EXPECT_THAT(lines(note), ElementsAre("paragraph: "));
    EXPECT_EQ(focus, note.blocks[0].id);
    EXPECT_NE(focus, last);
}

TEST(NoteEditor, move_clampsAndLeavesTheDateAloneWhenNothingMoves) {
    Note note = noteOf({block(BlockKind::bullet, "A"), block(BlockKind::bullet, "B"), block(BlockKind::bullet, "C")});
    NoteEditor::move(note.blocks[0].id, -5, note, later);
    EXPECT_EQ(note.modified, created);
    NoteEditor::move(note.blocks[0].id, 2147483647, note, later);
    EXPECT_THAT(lines(note), ElementsAre("bullet: B", "bullet: C", "bullet: A"));
    NoteEditor::move(note.blocks[2].id, -1, note, later);
    EXPECT_THAT(lines(note), ElementsAre("bullet: B", "bullet: A", "bullet: C"));
    EXPECT_EQ(note.modified, later);
}

TEST(NoteEditor, update_changedTextMakesADigestBlockTheUsers) {
    Note note = noteOf({block(BlockKind::bullet, "A")});
    note.blocks[0].fromDigest = true;
    const Uuid id = note.blocks[0].id;
    NoteEditor::update(id, note, later, [](Block& changed) { changed.done = true; });
    EXPECT_TRUE(note.blocks[0].fromDigest);
    NoteEditor::update(id, note, later, [](Block& changed) { changed.text = "B"; });
    EXPECT_FALSE(note.blocks[0].fromDigest);
}

TEST(NoteEditor, setKind_keepsTheWords) {
    Note note = noteOf({block(BlockKind::paragraph, "some words")});
    const Uuid id = note.blocks[0].id;
    using Rows = std::vector<std::vector<std::string>>;
    NoteEditor::setKind(BlockKind::table, id, note, later);
    EXPECT_EQ(note.blocks[0].rows, (Rows{{"some words", ""}, {"", ""}}));
    EXPECT_EQ(note.blocks[0].text, "");
    NoteEditor::setCell(id, 1, 1, "more", note, later);
    NoteEditor::setKind(BlockKind::flashcard, id, note, later);
    EXPECT_EQ(note.blocks[0].text, "some words   more");
    EXPECT_EQ(note.blocks[0].card, CardState{});
    NoteEditor::setKind(BlockKind::divider, id, note, later);
    EXPECT_EQ(note.blocks[0].text, "");
    note.modified = created;
    NoteEditor::setKind(BlockKind::divider, id, note, later);
    EXPECT_EQ(note.modified, created);
}

TEST(NoteEditor, pressReturn_continuesListsAndEndsThem) {
    Note note = noteOf({block(BlockKind::todo, "buy"), block(BlockKind::heading, "H")});
    note.blocks[0].done = true;
    const auto made = NoteEditor::pressReturn(note.blocks[0].id, note, later);
    ASSERT_TRUE(made && std::holds_alternative<NoteEditor::NewBlock>(*made));
    EXPECT_EQ(std::get<NoteEditor::NewBlock>(*made).id, note.blocks[1].id);
    EXPECT_THAT(lines(note), ElementsAre("todo: [x] buy", "todo: ", "heading: H"));

    note.blocks[1].text = " \t";
    EXPECT_EQ(NoteEditor::pressReturn(note.blocks[1].id, note, later),
              NoteEditor::ReturnResult(NoteEditor::LeftList{note.blocks[1].id}));
    NoteEditor::pressReturn(note.blocks[2].id, note, later);
    EXPECT_THAT(lines(note), ElementsAre("todo: [x] buy", "paragraph:  \t", "heading: H", "paragraph: "));
    EXPECT_EQ(NoteEditor::pressReturn(Uuid::random(), note, later), std::nullopt);
}

TEST(NoteEditor, pressDeleteWhenEmpty_takesTheFormAwayBeforeTheBlock) {
    Note note = noteOf({block(BlockKind::quote, ""), block(BlockKind::divider, "")});
    const Uuid quote = note.blocks[0].id;
    EXPECT_EQ(NoteEditor::pressDeleteWhenEmpty(quote, note, later), quote);
    EXPECT_EQ(note.blocks[0].kind, BlockKind::paragraph);
    EXPECT_EQ(NoteEditor::pressDeleteWhenEmpty(note.blocks[1].id, note, later), quote);
    EXPECT_EQ(NoteEditor::pressDeleteWhenEmpty(quote, note, later), std::nullopt);
    EXPECT_EQ(note.blocks.size(), 1U);
}

TEST(NoteEditor, applyShortcut_turnsTypedFormsIntoBlocks) {
    struct Case {
        BlockKind kind;
        std::string typed;
        std::string result;
    };

    const std::vector<Case> cases{
        {BlockKind::paragraph, "# Plan", "heading: Plan"},
        {BlockKind::paragraph, "## Plan", "subheading: Plan"},
        {BlockKind::paragraph, "### Plan", "subheading: Plan"},
        {BlockKind::paragraph, "#Plan", "paragraph: #Plan"},
        {BlockKind::paragraph, "[x] done", "todo: [x] done"},
        {BlockKind::paragraph, "- [ ] a", "todo: a"},
        {BlockKind::paragraph, "• a", "bullet: a"},
        {BlockKind::bullet, "[] a", "todo: a"},
        {BlockKind::bullet, "- [x] a", "todo: [x] a"},
        {BlockKind::bullet, "# a", "bullet: # a"},
        {BlockKind::heading, "> a", "heading: > a"},
        {BlockKind::paragraph, " --- \t", "divider: "},
        {BlockKind::paragraph, "----", "paragraph: ----"},
        {BlockKind::paragraph, "a :: b :: c", "flashcard: a / b :: c"},
        {BlockKind::paragraph, " :: b", "paragraph:  :: b"},
        {BlockKind::heading, "a :: b", "heading: a :: b"},
    };
    for (const Case& one : cases) {
        Note note = noteOf({block(one.kind, one.typed)});
        const bool changed = NoteEditor::applyShortcut(note.blocks[0].id, note, later);
        EXPECT_THAT(lines(note), ElementsAre(one.result)) << one.typed;
        EXPECT_EQ(changed, one.result != std::string(rawValue(one.kind)) + ": " + one.typed) << one.typed;
        EXPECT_EQ(note.modified, changed ? later : created) << one.typed;
    }
}

TEST(NoteEditor, tables_keepOneRowAndOneColumnAndIgnoreWhatIsOutOfRange) {
    using Rows = std::vector<std::vector<std::string>>;
    Note note = noteOf({Block::table({{"a", "b"}, {"c"}})});
    const Uuid id = note.blocks[0].id;
    NoteEditor::setCell(id, 1, 1, "x", note, later);
    NoteEditor::removeRow(2, id, note, later);
    NoteEditor::removeColumn(2, id, note, later);
    EXPECT_EQ(note.modified, created);
    NoteEditor::addRow(id, note, later);
    NoteEditor::addColumn(id, note, later);
    EXPECT_EQ(note.blocks[0].rows, (Rows{{"a", "b", ""}, {"c", ""}, {"", "", ""}}));
    NoteEditor::removeColumn(2, id, note, later);
    NoteEditor::removeRow(0, id, note, later);
    EXPECT_EQ(note.blocks[0].rows, (Rows{{"c", ""}, {"", ""}}));
    NoteEditor::removeRow(1, id, note, later);
    NoteEditor::removeColumn(0, id, note, later);
    NoteEditor::removeColumn(0, id, note, later);
    NoteEditor::removeRow(0, id, note, later);
    EXPECT_EQ(note.blocks[0].rows, (Rows{{""}}));

    Note empty = noteOf({Block::table({})});
    NoteEditor::addRow(empty.blocks[0].id, empty, later);
    EXPECT_EQ(empty.blocks[0].rows, (Rows{{"", ""}}));
}

TEST(NoteEditor, statistics_countTitleAndBlocks) {
    Note note =
        noteOf({block(BlockKind::heading, "One two"), block(BlockKind::divider, "no"), block(BlockKind::bullet, ""),
                Block::table({{"a", "b"}, {"c", ""}}), Block::flashcard("front", "back")});
    EXPECT_EQ(NoteEditor::plainText(note), "One two\na b\nc \nfront\nback");
    note.title = "Title — here";
    EXPECT_EQ(NoteEditor::wordCount(note), 9U);
    EXPECT_EQ(NoteEditor::readingMinutes(note), 1U);
    EXPECT_EQ(NoteEditor::readingMinutes(noteOf({})), 0U);
    std::string long231;
    for (int i = 0; i < 231; ++i) {
        long231 += "word ";
    }
    EXPECT_EQ(NoteEditor::readingMinutes(noteOf({block(BlockKind::paragraph, long231)})), 2U);
}

} // namespace
} // namespace varnic
