#include "VarnicCore/Export/MarkdownImport.h"

#include "VarnicCore/Export/Exporter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace varnic {
namespace {

/// A block in one line, such as "todo[x] Call".
std::string described(const Block& block) {
    std::string text(rawValue(block.kind));
    text += block.done ? "[x] " : " ";
    text += block.text;
    if (block.kind == BlockKind::flashcard) {
        text += " = " + block.back;
    }
    for (const auto& row : block.rows) {
        text += "/";
        for (const auto& cell : row) {
            text += cell + ";";
        }
    }
    return text;
}

std::vector<std::string> described(const std::vector<Block>& blocks) {
    std::vector<std::string> all(blocks.size());
    std::ranges::transform(blocks, all.begin(), [](const Block& block) { return described(block); });
    return all;
}

struct Reading {
    std::string text;
    std::vector<std::string> blocks;
};

TEST(MarkdownImport, blocks_eachShape) {
    const std::vector<Reading> readings{
        {"", {}},
        {" \n\t\n\u00A0\n", {}},
        {"One\n## Two\n### Three\n# Four", {"paragraph One", "heading Two", "subheading Three", "heading Four"}},
        {"- [X] done _(@Them, due Friday)_", {"todo[x] done"}},
        {"* [ ] open\n- [x] shut\n- [y] odd", {"todo open", "todo[x] shut", "bullet [y] odd"}},
        {"- [ ]\n- [ ]x", {"bullet [ ]", "bullet [ ]x"}},
        {"- a\n* b\n+ c", {"bullet a", "bullet b", "paragraph + c"}},
        {"*not a list*\n\\- item\n\\\\ two", {"paragraph *not a list*", "paragraph - item", "paragraph \\ two"}},
        {"---\n***\n----\n- --", {"divider ", "divider ", "paragraph ----", "bullet --"}},
        {"> Said\n>unsaid\n>  \\far", {"quote Said", "paragraph >unsaid", "quote  \\far"}},
        {"  ## Indented\t\r\n\t- too\r\n", {"heading Indented", "bullet too"}},
        {"#5 is alive\n####", {"paragraph #5 is alive", "paragraph ####"}},
        {"last\r", {"paragraph last\r"}},
    };
    for (const auto& [text, blocks] : readings) {
        const auto document = MarkdownImport::blocks(text);
        EXPECT_EQ(described(document.blocks), blocks) << text;
        EXPECT_EQ(document.title, std::nullopt);
    }
}

TEST(MarkdownImport, title_onlyTheFirstHeadingInFrontOfAllBlocks) {
    const auto twice = MarkdownImport::blocks("\n# Title\n\n# Another");
    EXPECT_EQ(twice.title, "Title");
    EXPECT_EQ(described(twice.blocks), (std::vector<std::string>{"heading Another"}));
    const auto late = MarkdownImport::blocks("Text\n# X");
    EXPECT_EQ(late.title, std::nullopt);
    EXPECT_EQ(late.blocks.back().kind, BlockKind::heading);
}

TEST(MarkdownImport, flashcard_takesTheAnswerFromTheNextLineOnly) {
    const std::vector<Reading> readings{
        {"**Q:** a\n  **A:** \\- b ", {"flashcard a = - b"}},
        {"**Q:** a", {"flashcard a = "}},
        {"**Q:**\n**A:**", {"flashcard  = "}},
        {"**Q:** a\n\n**A:** b", {"flashcard a = ", "paragraph **A:** b"}},
        {"**A:** b", {"paragraph **A:** b"}},
    };
    for (const auto& [text, blocks] : readings) {
        const auto cards = MarkdownImport::blocks(text).blocks;
        EXPECT_EQ(described(cards), blocks) << text;
        EXPECT_EQ(cards.front().card.has_value(), cards.front().kind == BlockKind::flashcard);
    }
}

TEST(MarkdownImport, table_dropsTheSeparatorAndEndsAtOtherLines) {
    const std::vector<Reading> readings{
        {"| a | b |\n| --- | :-: |\n|:---|---:|\n  | c |\nend", {"table /a;b;/:-:;/c;", "paragraph end"}},
        {"| - | --- |\n|---|--|", {"table /-;---;/---;--;"}},
        {"| --- |\n\n|x", {"table ", "table /x;"}},
        {"|", {"table /;"}},
        {"|---\u2028|", {"table "}},
    };
    for (const auto& [text, blocks] : readings) {
        auto tables = described(MarkdownImport::blocks(text).blocks);
        EXPECT_EQ(tables.size(), blocks.size()) << text;
        EXPECT_EQ(tables.back(), blocks.back()) << text;
    }
    EXPECT_EQ(described(MarkdownImport::blocks("| a | b |\n| --- | :---: |\n| c |").blocks),
              (std::vector<std::string>{"table /a;b;/c;"}));
}

TEST(MarkdownImport, splitRow_barsAndBackslashes) {
    const std::vector<std::pair<std::string, std::vector<std::string>>> rows{
        {"| a \\| b | c |", {"a | b", "c"}},
        {"a|b", {"a", "b"}},
        {"", {""}},
        {"|", {""}},
        {"||", {""}},
        {"|||", {"", ""}},
        {"|a\\|", {"a|"}},
        {"|a\\\\|b|", {"a\\|b"}},
        {"| a\\ | b |", {"a\\", "b"}},
        {" | a |", {"", "a"}},
        {"|a\\||b", {"a|", "b"}},
        {"|\t\u00A0x\u00A0|", {"x"}},
    };
    for (const auto& [line, cells] : rows) {
        EXPECT_EQ(MarkdownImport::splitRow(line), cells) << line;
    }
}

TEST(MarkdownImport, exportedNote_comesBackWithItsKindsAndTexts) {
    Block tagged{.kind = BlockKind::todo, .text = "Ship (v2) _it_", .done = true};
    tagged.owner = Speaker::them;
    tagged.due = "Friday";
    const std::vector<Block> blocks{{.text = "# no heading"},
                                    {.kind = BlockKind::heading, .text = "> Plan \\"},
                                    {.kind = BlockKind::subheading, .text = "- Detail"},
                                    {.kind = BlockKind::quote, .text = "Said \U0001F389"},
                                    tagged,
                                    {.kind = BlockKind::todo, .text = "- [ ] twice"},
                                    {.kind = BlockKind::bullet, .text = "#\uFE0F\u20E3 one"},
                                    Block::flashcard("**Q:** why", "> because"),
                                    Block::table({{"a|b", "\\"}, {"", "e\u0301"}}),
                                    {.kind = BlockKind::divider}};
    const Note note(Uuid::random(), "Q3 # plan", Date{}, blocks);
    const std::string text = Exporter::markdown(note, {.yourName = "Sam"}, Region{});
    const auto document = MarkdownImport::blocks(text);
    EXPECT_EQ(document.title, "Q3 # plan");
    EXPECT_EQ(described(document.blocks), described(blocks)) << text;
}

TEST(MarkdownImport, todo_losesItsLastTagAlone) {
    const std::vector<std::pair<std::string, std::string>> texts{
        {"a _(b)_ _(c)_", "a _(b)_"},
        {"a\t\u00A0_(due (Fri)_", "a"},
        {"a _(b)_ c", "a _(b)_ c"},
        {"a_(b)_", "a_(b)_"},
        {" _(b)_", ""},
        {"a _( _(b)_", "a"},
        {"a _(b) _(c)_", "a _(b)"},
        {"a _(b)_\u2028", "a\u2028"},
        {"a )_ b_( _()_", "a )_ b_("},
        {"a _(b\xFF)_", "a"},
        {"a _(b)", "a _(b)"},
        {"\\- a _(b)_", "- a"},
    };
    for (const auto& [text, left] : texts) {
        EXPECT_EQ(MarkdownImport::blocks("- [ ] " + text).blocks.at(0).text, left) << text;
    }
}

TEST(MarkdownImport, blocks_ofHugeInputs_takeEveryByte) {
    const auto repeated = [](std::string_view piece, std::size_t bytes) {
        std::string text;
        while (text.size() < bytes) {
            text += piece;
        }
        return text;
    };
    constexpr std::size_t size = 1'000'000;
    for (const std::string& line :
         {repeated("a", 10 * size), repeated("\\", size), repeated("é", size), "- [ ] " + repeated(" _(", size),
          "- [ ] " + repeated("x_(", size) + ")_", "- [ ] " + repeated(" ", size) + repeated("x_(", size) + ")_",
          "- [ ] " + repeated(" _(a)_", size), "- [ ] " + repeated(")_", size), "|" + repeated("-", size) + "x",
          "|" + repeated("\\|", size), "**Q:**" + repeated(" x", size), repeated("\x80", size)}) {
        const auto blocks = MarkdownImport::blocks(line).blocks;
        ASSERT_EQ(blocks.size(), 1U);
        const Note note(Uuid::random(), "", Date{}, blocks);
        EXPECT_GE(Exporter::markdown(note, {}, Region{}).size(), line.size() - 10);
    }
    const std::string table = repeated("| a | b |\n", std::size_t{100'000} * 10);
    EXPECT_EQ(MarkdownImport::blocks(table).blocks.at(0).rows.size(), 100'000U);
    EXPECT_EQ(MarkdownImport::blocks(repeated("|", 1'000'000)).blocks.at(0).rows.at(0).size(), 999'999U);
}

} // namespace
} // namespace varnic
