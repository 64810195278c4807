#include "VarnicCore/Library/Todos.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace varnic {
namespace {

Block todo(std::string text, std::optional<std::string> due = std::nullopt) {
    Block block;
    block.kind = BlockKind::todo;
    block.text = std::move(text);
    block.due = std::move(due);
    return block;
}

Note noteOf(const std::string& created, std::vector<Block> blocks) {
    return {Uuid::random(), "Note of " + created, parseDate(created), std::move(blocks)};
}

std::vector<std::string> texts(const std::vector<Note>& notes, const Region& region = {}) {
    std::vector<std::string> listed;
    for (const OpenTodo& row : Todos::open(notes, region)) {
        listed.push_back(row.block.text);
    }
    return listed;
}

using Texts = std::vector<std::string>;

TEST(Todos, open_leavesOutWhatIsTickedBlankOrNoTodo) {
    Block done = todo("done");
    done.done = true;
    Block bullet = todo("bullet");
    bullet.kind = BlockKind::bullet;
    std::vector<Note> notes{
        noteOf("2026-03-10T12:00:00Z", {done, todo(""), todo(" \t\u00A0"), bullet, todo("open"), todo("\n")})};
    EXPECT_EQ(texts(notes), (Texts{"open", "\n"}));
    notes[0].blocks[0].done = false;
    EXPECT_EQ(texts(notes), (Texts{"done", "open", "\n"}));
}

TEST(Todos, open_datedFirstThenNewestNoteThenBlockOrder) {
    const std::vector<Note> notes{
        noteOf("2026-03-01T12:00:00Z", {todo("old 1"), todo("old tomorrow", "tomorrow"), todo("old 2")}),
        noteOf("2026-03-10T12:00:00Z",
               {todo("new 1"), todo("new sometime", "when pigs fly"), todo("new tomorrow", "tomorrow"), todo("new 2")}),
        noteOf("2026-03-10T12:00:00Z", {todo("twin tomorrow", "tomorrow"), todo("twin today", "today")}),
    };
    EXPECT_EQ(texts(notes), (Texts{"old tomorrow", "twin today", "new tomorrow", "twin tomorrow", "new 1",
                                   "new sometime", "new 2", "old 1", "old 2"}));
}

TEST(Todos, open_ofACall_countsFromItsStartInTheRegion) {
    // The call was on a Tuesday evening in New York; the note was made a week later.
    Note note = noteOf("2026-03-17T12:00:00Z", {todo("Send it", "Friday"), todo("Now", "today")});
    note.call = CallRecord{};
    note.call->startedAt = parseDate("2026-03-11T01:00:00Z");
    const Region newYork{"en_US", "America/New_York"};
    const auto rows = Todos::open(std::vector{note}, newYork);
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(formatDate(rows[0].dueDate.value()), "2026-03-10T04:00:00.000Z");
    EXPECT_EQ(formatDate(rows[1].dueDate.value()), "2026-03-13T04:00:00.000Z");
    EXPECT_EQ(rows[1].noteID, note.id);
    EXPECT_EQ(rows[1].noteTitle, note.title);
    EXPECT_EQ(rows[1].id(), note.blocks[0].id);
    note.call.reset();
    EXPECT_EQ(formatDate(Todos::open(std::vector{note}, newYork).back().dueDate.value()), "2026-03-20T04:00:00.000Z");
}

} // namespace
} // namespace varnic
