#include "VarnicCore/Editor/BlockNotes.h"
#include "VarnicCore/Editor/BlockSelection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace varnic {
namespace {

using namespace blockNotes;
using testing::ElementsAre;
using testing::ElementsAreArray;

struct Pasted {
    const char* name;
    std::vector<std::string_view> before;
    std::string text;
    std::vector<std::string> after;
    bool isMarkdown = false;
};

TEST(BlockPaste, putsLinesIntoTextsAndMakesBlocks) {
    const std::vector<Pasted> cases{
        // One line.
        {"into a text, to the letter", {"P: on^e"}, " - x\t", {"paragraph: on - x\t^e"}},
        {"a line with its end", {"B: on^e"}, "x\r\n", {"bullet: onx^e"}},
        {"a form into an empty paragraph", {"P: ^"}, "- [x] done", {"todo: [x] done^"}},
        {"a form as Markdown", {"P: ^"}, "## Plan", {"heading: Plan^"}, true},
        {"words as they are", {"P: ^"}, " \\alpha", {"paragraph:  \\alpha^"}, true},
        {"a form into an empty item", {"T: ^"}, "- [x] a", {"todo: [x] a^"}},
        {"words into an empty heading", {"H: ^"}, "Plan", {"heading: Plan^"}},
        {"behind a divider", {"^---", "P: y"}, "x", {"divider: ", "paragraph: x^", "paragraph: y"}},
        {"control characters", {"P: ^"}, std::string("a\0b\x1b[1m\x7f", 8), {"paragraph: ab[1m^"}},
        {"malformed bytes", {"P: ^"}, "a\xff\xc3", {"paragraph: a\uFFFD\uFFFD^"}},
        // Several lines.
        {"between the halves", {"P: on^e"}, "a\nb\r\n\r\nc", {"paragraph: ona", "paragraph: b", "paragraph: c^e"}},
        {"other line breaks",
         {"P: ^"},
         "a\rb\u2028c\vd",
         {"paragraph: a", "paragraph: b", "paragraph: c", "paragraph: d^"}},
        {"on with a list", {"T: on^e"}, "a\nb", {"todo: ona", "todo: b^e"}},
        {"into an empty block", {"P: x", "T: ^"}, "# A\n- b", {"paragraph: x", "heading: A", "bullet: b^"}},
        {"another kind in the middle",
         {"H: on^e"},
         "- a\n- b",
         {"heading: on", "bullet: a", "bullet: b^", "paragraph: e"}},
        {"the same kind in the middle", {"B: on^e"}, "- a\n- b", {"bullet: ona", "bullet: b^e"}},
        {"another kind before a text", {"H: ^one"}, "- a\n---", {"bullet: a", "^divider: ", "heading: one"}},
        {"behind a card", {"^C: q / a"}, "a\nb", {"flashcard: q / a", "paragraph: a", "paragraph: b^"}},
        {"only blank lines", {"P: on^e"}, "\n \n", {"paragraph: on^e"}},
        // Plain text.
        {"forms as typed",
         {"P: ^"},
         "[] a\n• b\nq :: a\n> c\n  d  ",
         {"todo: a", "bullet: b", "flashcard: q / a", "quote: c", "paragraph:   d^"}},
        {"all that a line says",
         {"P: ^"},
         "- [ ] a _(b)_\n- \\x\n* [X] c",
         {"todo: a _(b)_", "bullet: \\x", "todo: [x] c^"}},
        {"Markdown without saying so",
         {"P: ^"},
         "**Q:** q\n**A:** a\n| a | b |\n| --- | --- |\n# T\n",
         {"flashcard: q / a", "table: a,b", "heading: T^"}},
        {"cells of a spreadsheet", {"P: ^"}, "\tb\nc\t d\nx", {"table: ,b;c,d", "paragraph: x^"}},
        {"indented lines", {"P: ^"}, "\tif x:\n\treturn", {"paragraph: \tif x:", "paragraph: \treturn^"}},
        {"a list of a word processor", {"P: ^"}, "•\ta\n•\tb\n1.\tc", {"bullet: a", "bullet: b", "paragraph: 1. c^"}},
        // Markdown.
        {"a title and a table", {"P: ^"}, "# T\n\n|a|b|\n|---|---|\n|1|2|", {"heading: T", "^table: a,b;1,2"}, true},
        {"no tables of tabs", {"P: ^"}, "a\tb\nc\td", {"paragraph: a\tb", "paragraph: c\td^"}, true},
    };
    for (const Pasted& one : cases) {
        SCOPED_TRACE(one.name);
        Marked marked(one.before);
        const TextPlace caret = BlockSelection::paste(one.text, one.isMarkdown, marked.places[0], marked.note, later);
        EXPECT_THAT(linesWith(caret, marked.note), ElementsAreArray(one.after));
    }
}

TEST(BlockPaste, readsBackWhatCopyGives) {
    const Marked marked(
        {"P: a", "H: Plan", "T: open", "X: done", "T: ", "X: ", "B: b", "Q: said", "---", "|t", "C: q / a", "P: z"});
    const auto pasted = [&](const std::string& text, bool isMarkdown) {
        Note note = noteOf({block(BlockKind::paragraph)});
        BlockSelection::paste(text, isMarkdown, {note.blocks[0].id, 0}, note, later);
        return lines(note);
    };
    const TextSpan all = everything(marked.note);
    EXPECT_EQ(pasted(BlockSelection::markdown(all, marked.note, {}), true), lines(marked.note));
    std::vector<std::string> plain = lines(marked.note);
    plain[1] = "paragraph: Plan";
    EXPECT_EQ(pasted(BlockSelection::plainText(all, marked.note), false), plain);
}

TEST(BlockPaste, copiedBlocksKeepAllButTheirPlaceInADigest) {
    Marked marked({"^C: q / a", "T: ca^ll", "P: x^y"});
    marked.note.blocks[0].card = CardState{.box = 3, .due = later, .reviews = 4};
    marked.note.blocks[1].owner = Speaker::them;
    marked.note.blocks[1].fromDigest = true;
    const std::vector<Block> copied = BlockSelection::blocks({marked.places[0], marked.places[1]}, marked.note);
    const TextPlace caret = BlockSelection::paste(copied, marked.places[2], marked.note, later);
    EXPECT_THAT(linesWith(caret, marked.note), ElementsAre("flashcard: q / a", "todo: call", "paragraph: x",
                                                           "flashcard: q / a", "todo: ca^", "paragraph: y"));
    EXPECT_EQ(marked.note.blocks[3].card, marked.note.blocks[0].card);
    EXPECT_EQ(marked.note.blocks[4].owner, Speaker::them);
    EXPECT_FALSE(marked.note.blocks[4].fromDigest);
    EXPECT_NE(marked.note.blocks[3].id, marked.note.blocks[0].id);
    const std::vector<Block> words =
        BlockSelection::blocks({{marked.places[1].block, 0}, marked.places[1]}, marked.note);
    EXPECT_THAT(lines(words), ElementsAre("paragraph: ca")); // words of a to-do are no to-do
}

TEST(BlockPaste, takesTenMegabytesOfLines) {
    constexpr std::size_t count = 100'000;
    constexpr std::size_t length = 103;
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += "- " + std::string(length, 'x') + "\n";
    }
    Marked marked({"P: on^e"});
    const TextPlace caret = BlockSelection::paste(text, false, marked.places[0], marked.note, later);
    ASSERT_EQ(marked.note.blocks.size(), count + 2);
    EXPECT_EQ(caret, (TextPlace{marked.note.blocks[count].id, length}));
    EXPECT_EQ(line(marked.note.blocks.back()), "paragraph: e");
}

} // namespace
} // namespace varnic
