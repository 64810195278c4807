#include "VarnicCore/Editor/NoteEditor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace varnic {
namespace {

using testing::ElementsAre;

const Date started = parseDate("2026-03-14T09:00:00Z");
const Date later = parseDate("2026-03-14T10:00:00Z");

CallDigest digestOf(std::vector<std::string> summary, const std::vector<std::string>& actions) {
    CallDigest digest;
    digest.title = "Pricing & launch";
    digest.summary = std::move(summary);
    for (const std::string& text : actions) {
        ActionItem action;
        action.text = text;
        action.owner = Speaker::them;
        action.due = "Friday";
        digest.actions.push_back(action);
    }
    return digest;
}

std::vector<std::string> lines(const Note& note) {
    std::vector<std::string> found;
    for (const Block& block : note.blocks) {
        found.push_back((block.fromDigest ? "+" : "") + std::string(rawValue(block.kind)) + ": " + block.text);
    }
    return found;
}

Block* findText(Note& note, const std::string& text) {
    const auto found = std::ranges::find(note.blocks, text, &Block::text);
    return found == note.blocks.end() ? nullptr : &*found;
}

TEST(DigestSections, callNote_withDigest_hasSectionsInOrder) {
    CallRecord call;
    call.startedAt = started;
    const Uuid id = Uuid::random();
    const Note note =
        NoteEditor::callNote(id, call, digestOf({"The price is 40."}, {"Send the deck"}), Region{}, later);
    EXPECT_EQ(note.id, id);
    EXPECT_EQ(note.title, "Pricing & launch");
    EXPECT_EQ(note.created, started);
    EXPECT_THAT(lines(note), ElementsAre("heading: To-dos", "+todo: Send the deck", "heading: Notes",
                                         "paragraph: ", "heading: Summary", "+bullet: The price is 40."));
    EXPECT_EQ(note.todos()[0].owner, Speaker::them);
    EXPECT_EQ(note.todos()[0].due, "Friday");
    EXPECT_TRUE(note.call->digest);
}

TEST(DigestSections, callNote_withoutDigest_isNamedAfterItsDate) {
    CallRecord call;
    call.startedAt = started;
    const Note note = NoteEditor::callNote(Uuid::random(), call, std::nullopt, Region{}, later);
    EXPECT_EQ(note.title, "Call on Sat 14 Mar");
    EXPECT_EQ(note.modified, started);
    EXPECT_THAT(lines(note), ElementsAre("heading: Notes", "paragraph: "));
}

TEST(DigestSections, apply_secondDigest_keepsWhatIsTheUsers) {
    Note note(started);
    NoteEditor::apply(digestOf({"Old point.", "Old line."}, {"Send the deck", "Book the venue"}), note, true, later);
    findText(note, "Send the deck")->done = true;
    NoteEditor::update(findText(note, "Old line.")->id, note, later, [](Block& block) { block.text = "My line."; });
    NoteEditor::apply(digestOf({"New point."}, {"Send the deck!", "Write to Maya"}), note, false, later);
    EXPECT_THAT(lines(note),
                ElementsAre("heading: Summary", "bullet: My line.", "+bullet: New point.", "heading: To-dos",
                            "+todo: Send the deck", "+todo: Write to Maya", "heading: Notes", "paragraph: "));
    EXPECT_TRUE(findText(note, "Send the deck")->done);
}

TEST(DigestSections, apply_addsNotesAndKeepsTheUsersTitleAndHeadings) {
    Note note(started, "Mine");
    note.blocks = {Block{}, Block{}};
    note.blocks[1].kind = BlockKind::heading;
    note.blocks[1].text = "To-dos";
    NoteEditor::apply(digestOf({"Point."}, {}), note, false, later);
    EXPECT_EQ(note.title, "Mine");
    EXPECT_EQ(note.modified, later);
    EXPECT_THAT(lines(note),
                ElementsAre("heading: Summary", "+bullet: Point.", "heading: To-dos", "heading: Notes", "paragraph: "));
}

} // namespace
} // namespace varnic
