#include "VarnicCore/Export/Exporter.h"
#include "VarnicCore/Export/RichNote.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

namespace varnic {
namespace {

using testing::ElementsAre;

std::string nameOf(const Colour& colour) {
    const std::vector<std::pair<Colour, std::string>> names{
        {Exporter::ink, ""}, {Exporter::muted, " muted"}, {Exporter::you, " you"}, {Exporter::them, " them"}};
    return std::ranges::find(names, colour, &std::pair<Colour, std::string>::first)->second;
}

std::string described(const Run& run) {
    const std::array faces{"serif", "sans", "digits"};
    return fmt::format("[{}{}{}{}{}{}|{}]", faces.at(static_cast<std::size_t>(run.font.typeface)), run.font.size,
                       run.font.semibold ? " bold" : "", run.font.italic ? " italic" : "", nameOf(run.colour),
                       run.struckThrough ? " struck" : "", run.text);
}

std::string described(const Paragraph& paragraph) {
    const ParagraphStyle& style = paragraph.style;
    EXPECT_EQ(style.lineHeightMultiple, 1.15);
    std::string text = fmt::format("{}/{}", style.before, style.after);
    if (style.headIndent != 0) {
        text += fmt::format(" {}-{}", style.firstLineIndent, style.headIndent);
        EXPECT_EQ(style.tabStop.value_or(style.headIndent), style.headIndent);
    }
    text += style.tabStop ? " tab" : "";
    text += style.alignment == Alignment::centred ? " centred" : "";
    text += paragraph.isRightToLeft ? " rtl" : "";
    for (const Run& run : paragraph.runs) {
        text += described(run);
    }
    return text;
}

std::vector<std::string> described(const StyledText& text) {
    std::vector<std::string> lines;
    for (const StyledText::Item& item : text.items()) {
        if (const auto* paragraph = std::get_if<Paragraph>(&item)) {
            lines.push_back(described(*paragraph));
            continue;
        }
        for (const auto& row : std::get<StyledTable>(item).rows) {
            lines.emplace_back("row");
            for (const Paragraph& cell : row) {
                lines.back() += " " + described(cell);
            }
        }
    }
    return lines;
}

TEST(StyledText, add_splitsAtNewlinesAndReplacesWhatCannotBeShown) {
    const std::vector<std::pair<std::string, std::vector<std::string>>> texts{
        {"", {""}},
        {"a\nb\r\nc\rd\u2029e\n", {"a", "b", "c", "d", "e", ""}},
        {"a\vb\fc\u0085d\u2028e", {"a\u2028b\u2028c\u2028d\u2028e"}},
        {"tab\tbell\x07null" + std::string(1, '\0') + "del\x7F c1\u0080",
         {"tab\tbell\uFFFDnull\uFFFDdel\uFFFD c1\uFFFD"}},
        {"\xFF\xED\xA0\x80|\xC3", {"\uFFFD\uFFFD\uFFFD\uFFFD|\uFFFD"}},
        {"\uFFFE\uFFFF\U0001F389", {"\uFFFD\uFFFD\U0001F389"}},
    };
    for (const auto& [text, paragraphs] : texts) {
        StyledText styled;
        styled.add({{text, Exporter::serif(12), Exporter::ink}});
        std::vector<std::string> found;
        for (const StyledText::Item& item : styled.items()) {
            found.push_back(std::get<Paragraph>(item).runs.at(0).text);
        }
        EXPECT_EQ(found, paragraphs) << text;
    }
}

TEST(Exporter, attributed_stylesEveryKind) {
    EXPECT_THAT(described(Exporter::attributed(RichNote::call(), {true, true, "Sam"}, false, Region{})),
                ElementsAre("0/4[serif24 bold|Q3 & “launch”]",
                            "0/14[sans10 muted|Zoom · Saturday 14 March 2026, 09:26 · 13 min · Summary by Varnic]",
                            "0/6[serif12|Brücke {x} \\ 今日]", "10/6[serif17 bold|Plan]", "6/4[serif14 bold|Detail]",
                            "0/3 2-20 tab[serif12|☐\t][sans9 you|Sam · ][serif12|Send designs  (Friday)]",
                            "0/3 2-20 tab[serif12 muted struck|☑\t][sans9 them struck|Maya · ]"
                            "[serif12 muted struck|Confirm]",
                            "0/3 4-18 tab[serif12|•\tPoint]", "0/6 18-18[serif12 italic muted|Said]",
                            "4/1 14-14[serif12 bold|Q  Front]", "0/8 14-14[serif12|A  Back]",
                            "row 0/0[sans10.5 bold|Name] 0/0[sans10.5 bold|Price] 0/0[sans10.5 bold|]",
                            "row 0/0[sans10.5|Basic] 0/0[sans10.5|] 0/0[sans10.5|]",
                            "row 0/0[sans10.5|Pro] 0/0[sans10.5|a\u2028b] 0/0[sans10.5|extra]", "0/4[sans4|]",
                            "6/10 centred[serif12 muted|⁂]", "0/6 rtl[serif12|مرحبا بالعالم 🎉]",
                            "14/6[serif17 bold|Follow-up email]", "0/4[sans10.5 bold|Subject: Notes]",
                            "0/8[sans10.5|Hi,]", "0/8[sans10.5|]", "0/8[sans10.5|bye]", "14/6[serif17 bold|Transcript]",
                            "0/6[sans10 bold you|Sam  ][digits9 muted|0:00]", "0/6[serif12|Hello.]",
                            "0/6[sans10 bold them|Maya  ][digits9 muted|1:05]", "0/6[serif12|Yes.]"));
}

TEST(Exporter, attributed_withoutCall_hasALowEmptyLine) {
    const Note note = RichNote::of({RichNote::block(BlockKind::todo, "a")});
    EXPECT_THAT(described(Exporter::attributed(note, {}, false, Region{})),
                ElementsAre("0/4[serif24 bold|T]", "0/6[sans6|]", "0/3 2-20 tab[serif12|☐\t][serif12|a]"));
}

TEST(Exporter, attributed_forWord_makesLinesOfTables) {
    const Note note = RichNote::of({Block::table({{"a", "b"}, {"c\nd"}, {}})});
    EXPECT_THAT(described(Exporter::attributed(note, {}, true, Region{})),
                ElementsAre("0/4[serif24 bold|T]", "0/6[sans6|]", "0/2[sans10.5 bold|a\tb]", "0/2[sans10.5|c\u2028d]",
                            "0/2[sans10.5|]", "0/4[serif12|]"));
}

TEST(Exporter, table_ofNoCellsIsNothing_andOfTooManyIsLines) {
    const Font font = Exporter::serif(12);
    EXPECT_TRUE(Exporter::table({{}, {}}, font, font, Exporter::ink).items().empty());
    const auto widest = Exporter::table({std::vector<std::string>(63)}, font, font, Exporter::ink);
    EXPECT_EQ(std::get<StyledTable>(widest.items().at(0)).columns, 63U);
    const auto wider = Exporter::table({std::vector<std::string>(64, "x")}, font, font, Exporter::ink);
    EXPECT_EQ(std::get<Paragraph>(wider.items().at(0)).runs.at(0).text.size(), 127U);
}

} // namespace
} // namespace varnic
