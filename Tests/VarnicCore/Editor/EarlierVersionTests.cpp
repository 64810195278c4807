#include "VarnicCore/Editor/EarlierVersion.h"

#include "VarnicCore/Editor/NoteEditor.h"

#include <gmock/gmock.h>

#include <iterator>
#include <string>
#include <vector>

namespace varnic {
namespace {

using testing::ElementsAre;

CallDigest digestOf(std::vector<std::string> summary) {
    return {.title = "Pricing", .summary = std::move(summary)};
}

Block heading(const std::string& text) {
    return {.kind = BlockKind::heading, .text = text};
}

std::vector<std::string> lines(const Note& note) {
    std::vector<std::string> texts;
    std::ranges::transform(note.blocks, std::back_inserter(texts), &Block::text);
    return texts;
}

class EarlierVersionTests : public testing::Test {
protected:
    const Date now = parseDate("2026-03-14T09:00:00Z");
    Note earlier{Uuid::random(), "Pricing", now, {Block{.text = "typed"}}, CallRecord{}};
};

TEST_F(EarlierVersionTests, undo_headingsAndBlanksThatTheUserAdded_stay) {
    NoteEditor::apply(digestOf({"Old."}), earlier, false, now);
    Note present = earlier;
    NoteEditor::apply(digestOf({"New."}), present, false, now);
    const std::vector<Block> added{heading("Notes"), Block{}, heading("Summary"), heading("To-dos"), Block{}};
    std::ranges::copy(added, std::back_inserter(present.blocks));
    Note expected = earlier;
    std::ranges::copy(added, std::back_inserter(expected.blocks));
    EXPECT_EQ(withEarlierDigest(present, earlier, now).blocks, expected.blocks);
}

TEST_F(EarlierVersionTests, undo_sectionsThatTheDigestMade_go) {
    Note present = earlier;
    NoteEditor::apply(digestOf({"New."}), present, false, now);
    ASSERT_THAT(lines(present), ElementsAre("typed", "Summary", "New.", "To-dos", "Notes", ""));
    EXPECT_EQ(withEarlierDigest(present, earlier, now).blocks, earlier.blocks);

    // Those of the user stay, also behind them and in their midst.
    const Block mine = heading("Summary");
    present.blocks.insert(present.blocks.begin(), mine);
    present.blocks.push_back(heading("Notes"));
    present.blocks.push_back(Block{});
    const Note undone = withEarlierDigest(present, earlier, now);
    EXPECT_THAT(lines(undone), ElementsAre("Summary", "typed", "Notes", ""));
    EXPECT_EQ(undone.blocks.front(), mine);
    EXPECT_EQ(undone.blocks[2], present.blocks[7]);
}

} // namespace
} // namespace varnic
