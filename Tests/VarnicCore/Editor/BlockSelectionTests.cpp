#include "VarnicCore/Editor/BlockSelection.h"

#include "VarnicCore/Editor/BlockNotes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace varnic {
namespace {

using namespace blockNotes;
using testing::ElementsAre;
using testing::ElementsAreArray;

using Shown = std::vector<std::string_view>;
using Lines = std::vector<std::string>;

TEST(TextPlace, ordered_putsPlacesInTheNotesOrderAndOnCodePoints) {
    const Note note =
        noteOf({block(BlockKind::heading, "né"), block(BlockKind::divider), block(BlockKind::bullet, "b")});
    const Uuid first = note.blocks[0].id;
    const Uuid last = note.blocks[2].id;
    EXPECT_EQ(ordered({last, 9}, {first, 2}, note), (TextSpan{{first, 1}, {last, 1}})); // inside "é"
    EXPECT_EQ(ordered({first, 3}, {first, 0}, note), (TextSpan{{first, 0}, {first, 3}}));
    EXPECT_EQ(ordered({Uuid::random(), 7}, {note.blocks[1].id, 4}, note),
              (TextSpan{{note.blocks[1].id, 0}, {note.blocks[1].id, 0}}));
    EXPECT_EQ(everything(note), (TextSpan{{first, 0}, {last, 1}}));
}

struct Copied {
    const char* name;
    Shown note;
    std::string markdown;
    std::string plain;
};

TEST(BlockSelection, copy_givesMarkdownAndPlainText) {
    const std::vector<Copied> cases{
        {"part of a text", {"B: one ^two^ three"}, "two", "two"},
        {"nothing", {"P: one^^"}, "", ""},
        {"all of a text", {"H: ^Plan^"}, "Plan", "Plan"},
        {"a list",
         {"P: in ^tro", "B: - a", "B: b", "X: c", "T: d^e"},
         "tro\n\n- \\- a\n- b\n\n- [x] c\n- [ ] d",
         "tro\n- - a\n- b\n- [x] c\n- [ ] d"},
        {"ends without text", {"P: a^", "H: Plan", "Q: said", "P: ^b"}, "## Plan\n\n> said", "Plan\n> said"},
        {"blocks without a line",
         {"^C: q / a", "|x", "^---"},
         "**Q:** q\n**A:** a\n\n| x |  |\n| --- | --- |\n|  |  |\n\n---",
         "q :: a\nx\t\n\t\n---"},
        {"one card", {"P: a", "^C: q / a"}, "**Q:** q\n**A:** a", "q :: a"},
    };
    for (const Copied& one : cases) {
        SCOPED_TRACE(one.name);
        const Marked marked(one.note);
        EXPECT_EQ(BlockSelection::markdown(marked.span(), marked.note, {}), one.markdown);
        EXPECT_EQ(BlockSelection::plainText({marked.places.back(), marked.places.front()}, marked.note), one.plain);
    }
}

TEST(BlockSelection, copyOfATodo_namesItsOwner) {
    Note note = noteOf({block(BlockKind::todo, "call"), block(BlockKind::paragraph)});
    note.blocks[0].owner = Speaker::you;
    EXPECT_EQ(BlockSelection::markdown(everything(note), note, {.yourName = "Ada"}), "- [ ] call _(@Ada)_");
}

struct Edited {
    const char* name;
    Shown before;
    Lines after;
};

TEST(BlockSelection, remove_joinsWhatIsLeftOfTheEnds) {
    const std::vector<Edited> cases{
        {"in one text", {"B: one^ two^ three"}, {"bullet: one^ three"}},
        {"over texts", {"H: on^e", "---", "C: q / a", "X: tw^o", "P: x"}, {"heading: on^o", "paragraph: x"}},
        {"everything", {"H: ^one", "P: two^"}, {"heading: ^"}},
        {"from a card into a text", {"P: x", "^C: q / a", "B: on^e"}, {"paragraph: x", "bullet: ^e"}},
        {"from a text to a table", {"P: on^e", "B: two", "^|t", "P: x"}, {"paragraph: on^", "paragraph: x"}},
        {"a divider behind a text", {"P: one", "^---", "---"}, {"paragraph: one^", "divider: "}},
        {"a divider before a text", {"^---", "P: one"}, {"paragraph: ^one"}},
        {"a table between cards",
         {"C: q / a", "^|t", "C: r / b"},
         {"flashcard: q / a", "paragraph: ^", "flashcard: r / b"}},
        {"the only block", {"^---"}, {"paragraph: ^"}},
    };
    for (const Edited& one : cases) {
        SCOPED_TRACE(one.name);
        Marked marked(one.before);
        const TextPlace caret = BlockSelection::remove(marked.span(), marked.note, later);
        EXPECT_THAT(linesWith(caret, marked.note), ElementsAreArray(one.after));
        EXPECT_EQ(marked.note.modified, later);
    }
}

TEST(BlockSelection, emptyAndUnknownSpansChangeNothing) {
    Marked marked({"B: one^", "P: "});
    const Note before = marked.note;
    const TextPlace unknown{Uuid::random(), 1};
    EXPECT_EQ(BlockSelection::remove({marked.places[0], marked.places[0]}, marked.note, later), marked.places[0]);
    EXPECT_EQ(BlockSelection::remove({unknown, unknown}, marked.note, later), unknown);
    EXPECT_EQ(BlockSelection::split(unknown, marked.note, later), std::nullopt);
    EXPECT_EQ(BlockSelection::joinWithPrevious(unknown.block, marked.note, later), std::nullopt);
    EXPECT_EQ(BlockSelection::joinWithNext(unknown.block, marked.note, later), std::nullopt);
    EXPECT_EQ(BlockSelection::paste("x", false, unknown, marked.note, later), unknown);
    EXPECT_EQ(BlockSelection::paste("\n", false, marked.places[0], marked.note, later), marked.places[0]);
    BlockSelection::move({unknown, unknown}, 1, marked.note, later);
    BlockSelection::move(everything(marked.note), 1, marked.note, later);
    EXPECT_EQ(marked.note, before);
}

TEST(BlockSelection, changedTextOfADigestIsTheUsers) {
    Marked marked({"B: one^", "B: two"});
    for (Block& one : marked.note.blocks) {
        one.fromDigest = true;
    }
    BlockSelection::split(marked.places[0], marked.note, later); // at the end: the text stays
    EXPECT_TRUE(marked.note.blocks[0].fromDigest);
    BlockSelection::paste("x", false, marked.places[0], marked.note, later);
    EXPECT_FALSE(marked.note.blocks[0].fromDigest);
    BlockSelection::split({marked.note.blocks[2].id, 1}, marked.note, later);
    EXPECT_FALSE(marked.note.blocks[2].fromDigest);
}

TEST(BlockSelection, split_goesOnWithAList) {
    const std::vector<Edited> cases{
        {"a paragraph", {"P: on^e"}, {"paragraph: on", "paragraph: ^e"}},
        {"a heading", {"H: on^e"}, {"heading: on", "paragraph: ^e"}},
        {"a ticked to-do", {"X: on^e"}, {"todo: [x] on", "todo: ^e"}},
        {"the end", {"B: one^", "P: x"}, {"bullet: one", "bullet: ^", "paragraph: x"}},
        {"the start keeps heading and tick", {"X: ^one"}, {"todo: ", "todo: [x] ^one"}},
        {"behind blanks", {"B:  ^one"}, {"bullet:  ", "bullet: ^one"}},
        {"an empty item", {"B:  ^"}, {"paragraph: ^ "}},
        {"a card", {"^C: q / a"}, {"flashcard: q / a", "paragraph: ^"}},
    };
    for (const Edited& one : cases) {
        SCOPED_TRACE(one.name);
        Marked marked(one.before);
        const auto focus = BlockSelection::split(marked.places[0], marked.note, later);
        EXPECT_THAT(linesWith({focus.value_or(Uuid()), 0}, marked.note), ElementsAreArray(one.after));
        EXPECT_EQ(marked.note.modified, later);
    }
}

TEST(BlockSelection, backspaceAtTheStart_takesTheFormAndThenTheBorder) {
    const std::vector<Edited> cases{
        {"a bullet", {"P: x", "B: ^one"}, {"paragraph: x", "paragraph: ^one"}},
        {"a paragraph behind a text", {"X: dé", "P: ^one", "P: x"}, {"todo: [x] dé^one", "paragraph: x"}},
        {"behind an empty paragraph", {"P: ", "P: ^one"}, {"paragraph: ^one"}},
        {"behind a divider", {"---", "P: ^one"}, {"paragraph: ^one"}},
        {"behind a card", {"C: q / a", "P: ^one"}, {"^flashcard: q / a", "paragraph: one"}},
        {"behind a table", {"|t", "P: ^one"}, {"^table: t,;,", "paragraph: one"}},
        {"the first", {"P: ^one"}, {"paragraph: one"}},
        {"a card itself", {"P: x", "^C: q / a"}, {"paragraph: x", "flashcard: q / a"}},
    };
    for (const Edited& one : cases) {
        SCOPED_TRACE(one.name);
        Marked marked(one.before);
        const auto caret = BlockSelection::joinWithPrevious(marked.places[0].block, marked.note, later);
        EXPECT_THAT(linesWith(caret.value_or(TextPlace{}), marked.note), ElementsAreArray(one.after));
    }
}

TEST(BlockSelection, deleteAtTheEnd_takesTheNextTextOver) {
    const std::vector<Edited> cases{
        {"before a to-do", {"B: one^", "X: two"}, {"bullet: one^two"}},
        {"before a divider", {"P: one^", "---", "P: x"}, {"paragraph: one^", "paragraph: x"}},
        {"before a card", {"P: one^", "C: q / a"}, {"paragraph: one", "^flashcard: q / a"}},
        {"an empty paragraph before a heading", {"P: ^", "H: Plan"}, {"heading: ^Plan"}},
        {"an empty paragraph before a card", {"P: ^", "C: q / a"}, {"^flashcard: q / a"}},
        {"the last", {"H: one^"}, {"heading: one"}},
    };
    for (const Edited& one : cases) {
        SCOPED_TRACE(one.name);
        Marked marked(one.before);
        const auto caret = BlockSelection::joinWithNext(marked.places[0].block, marked.note, later);
        EXPECT_THAT(linesWith(caret.value_or(TextPlace{}), marked.note), ElementsAreArray(one.after));
    }
}

TEST(BlockSelection, move_takesTheWholeSpanAsFarAsTheNoteGoes) {
    Marked marked({"P: a", "P: b^", "P: c^", "P: d"});
    BlockSelection::move(marked.span(), 1, marked.note, later);
    EXPECT_THAT(lines(marked.note), ElementsAre("paragraph: a", "paragraph: d", "paragraph: b", "paragraph: c"));
    BlockSelection::move(marked.span(), -9, marked.note, later);
    EXPECT_THAT(lines(marked.note), ElementsAre("paragraph: b", "paragraph: c", "paragraph: a", "paragraph: d"));
    EXPECT_EQ(marked.note.modified, later);
}

} // namespace
} // namespace varnic
