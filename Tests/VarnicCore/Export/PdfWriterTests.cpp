#include "VarnicCore/Export/Exporter.h"
#include "VarnicCore/Export/ReadBack.h"
#include "VarnicCore/Export/RichNote.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

namespace varnic {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

/// Has pdftotext leave out the page numbers.
const std::string inMargins = "-x 0 -W 595 -y 50 -H 745";

ReadBack::File pdfOf(const Note& note) {
    return {Exporter::data(note, ExportFormat::pdf, {true, true, "Sam"}, Region{}), "note.pdf"};
}

ReadBack::File pdfOf(std::vector<Block> blocks) {
    return pdfOf(RichNote::of(std::move(blocks)));
}

std::string textOf(const ReadBack::File& file, const std::string& options = "") {
    return ReadBack::squeezed(file.seenBy("pdftotext " + options + " FILE -"));
}

/// How many rows of a page's picture, at 300 dots an inch, a word inks.
int inkedRows(const ReadBack::File& file, const std::string& word) {
    const std::string boxes = file.seenBy("pdftotext -bbox FILE -");
    std::smatch found;
    const std::regex box("xMin=\"([0-9.]+)\" yMin=\"([0-9.]+)\" xMax=\"([0-9.]+)\" yMax=\"([0-9.]+)\">" + word + "<");
    if (!std::regex_search(boxes, found, box)) {
        return 0;
    }
    const auto dots = [&](std::size_t side) { return static_cast<int>(std::stod(found[side].str()) * 300 / 72); };
    const std::string picture =
        file.seenBy(fmt::format("pdftoppm -gray -singlefile -r 300 -x {} -y {} -W {} -H {} FILE", dots(1), dots(2),
                                dots(3) - dots(1), dots(4) - dots(2)));
    const auto width = static_cast<std::size_t>(dots(3) - dots(1));
    int rows = 0;
    const std::string_view points = std::string_view(picture).substr(picture.find("255\n") + 4);
    for (std::size_t at = 0; at + width <= points.size(); at += width) {
        rows += std::ranges::any_of(points.substr(at, width),
                                    [](char point) { return static_cast<unsigned char>(point) < 128; })
                    ? 1
                    : 0;
    }
    return rows;
}

TEST(Pdf, figures_areAsHighAsCapitals) {
    const ReadBack::File file =
        pdfOf({RichNote::block(BlockKind::paragraph, "HHH 1010"), RichNote::block(BlockKind::bullet, "3456789")});
    const int capitals = inkedRows(file, "HHH");
    ASSERT_GT(capitals, 20);
    EXPECT_NEAR(inkedRows(file, "1010"), capitals, 4);
    EXPECT_NEAR(inkedRows(file, "3456789"), capitals, 4);
}

TEST(Pdf, noteWithoutBlocks_isOneNumberedPageWithItsFacts) {
    const ReadBack::File file = pdfOf({});
    const std::string facts = file.seenBy("pdfinfo FILE");
    EXPECT_THAT(facts, ContainsRegex("Title: +T\n"));
    EXPECT_THAT(facts, ContainsRegex("Creator: +Varnic\n"));
    EXPECT_THAT(facts, ContainsRegex("CreationDate: +Sat Mar 14 09:26:53 2026"));
    EXPECT_THAT(facts, ContainsRegex("Pages: +1\n"));
    EXPECT_THAT(facts, ContainsRegex("Page size: +595 x 842 pts"));
    EXPECT_EQ(textOf(file), "T1");
}

TEST(Pdf, everyKind_isRealTextInEmbeddedSubsets) {
    const ReadBack::File file = pdfOf(RichNote::call());
    EXPECT_THAT(file.seenBy("qpdf --check FILE"), HasSubstr("No syntax or stream encoding errors"));
    const std::string fonts = file.seenBy("pdffonts FILE");
    for (const std::string font : {"Vollkorn-Regular", "Vollkorn-SemiBold", "Vollkorn-Italic", "Inter-Regular"}) {
        EXPECT_THAT(fonts, ContainsRegex("[A-Z]{6}\\+" + font + " .* yes yes yes"));
    }
    EXPECT_THAT(fonts, Not(ContainsRegex(" no +(yes|no) +(yes|no) +[0-9]+ +0\n")));
    const std::string text = textOf(file);
    for (const std::string piece :
         {"Q3&“launch”", "Brücke{x}\\今日", "☐Sam·Senddesigns(Friday)", "☑Maya·Confirm", "•Point", "QFront", "ABack",
          "NamePriceBasic", "extra", "⁂", "بالعالم", "Subject:Notes", "Maya1:05", "Yes."}) {
        EXPECT_THAT(text, HasSubstr(piece));
    }
}

TEST(Pdf, sizesColoursAndPlaces_areAsStyled) {
    // In thirds of a point; the program cuts a colour's fraction off.
    const std::string page = pdfOf(RichNote::call()).seenBy("pdftohtml -xml -stdout -i -zoom 3 FILE");
    for (const std::string font :
         {R"(size="72" family="[A-Z]+.Vollkorn-SemiBold" color="#1e2333")",
          R"(size="36" family="[A-Z]+.Vollkorn" color="#1e2333")",
          R"(size="36" family="[A-Z]+.Vollkorn" color="#6b707f")",
          R"(size="30" family="[A-Z]+.Inter-SemiBold" color="#2d4fa8")",
          R"(size="27" family="[A-Z]+.Inter" color="#af472d")", R"(size="24" family="[A-Z]+.Inter" color="#8e8e93")"}) {
        EXPECT_THAT(page, ContainsRegex(font));
    }
    for (const std::string place :
         {R"(left="168"[^>]*><b>Q3)", R"(left="222"[^>]*><i>Said)", R"(left="228"[^>]*>Sam)"}) {
        EXPECT_THAT(page, ContainsRegex(place));
    }
}

TEST(Pdf, textBehindFiveHundredPages_isLeftOut) {
    const std::vector<Block> blocks(25'000, RichNote::block(BlockKind::paragraph, "x"));
    const ReadBack::File file = pdfOf(blocks);
    EXPECT_THAT(file.seenBy("pdfinfo FILE"), ContainsRegex("Pages: +500\n"));
    EXPECT_THAT(textOf(file, "-f 500"), ContainsRegex("^x+500$"));
}

TEST(Pdf, wordWiderThanThePage_isBrokenInsideTheMargins) {
    const ReadBack::File file = pdfOf({RichNote::block(BlockKind::paragraph, std::string(3000, 'W'))});
    EXPECT_EQ(textOf(file, inMargins), "T" + std::string(3000, 'W'));
    const std::string boxes = file.seenBy("pdftotext -bbox FILE - | grep -c 'xMax=\"5[4-9][0-9]' || true");
    EXPECT_EQ(boxes, "0\n");
}

TEST(Pdf, longParagraph_losesNothing) {
    std::string text;
    for (int i = 0; text.size() < 200'000; ++i) {
        text += fmt::format("word{} ", i);
    }
    const std::string page = textOf(pdfOf({RichNote::block(BlockKind::paragraph, text)}), inMargins);
    EXPECT_EQ(page, "T" + ReadBack::squeezed(text));
}

TEST(Pdf, lineWithoutEnd_isBroken) {
    std::string marks = "e";
    for (int i = 0; i < 10'000; ++i) {
        marks += "\u0301";
    }
    EXPECT_THAT(textOf(pdfOf({RichNote::block(BlockKind::paragraph, marks + " end")})), HasSubstr("end"));
}

TEST(Pdf, rowHigherThanAPage_goesOnOnTheNext) {
    std::string cell;
    for (int i = 0; i < 1000; ++i) {
        cell += fmt::format("cell{} ", i);
    }
    const ReadBack::File file = pdfOf({Block::table({{"head", "b"}, {"short", cell}, {}, {"last"}})});
    EXPECT_THAT(file.seenBy("pdfinfo FILE"), Not(ContainsRegex("Pages: +[12]\n")));
    const std::string text = textOf(file, inMargins);
    for (const std::string piece : {"head", "short", "cell0", "cell500", "cell999", "last"}) {
        EXPECT_THAT(text, HasSubstr(piece));
    }
}

TEST(Pdf, sameNote_givesTheSameBytes) {
    const Note note = RichNote::call();
    EXPECT_EQ(Exporter::data(note, ExportFormat::pdf, {}, Region{}),
              Exporter::data(note, ExportFormat::pdf, {}, Region{}));
}

TEST(Pdf, titleThatIsNoText_isReplaced) {
    const Note note = RichNote::of({RichNote::block(BlockKind::paragraph, "\xED\xA0\x80 b\x01")}, "A\xFF\x02");
    const ReadBack::File file = pdfOf(note);
    EXPECT_THAT(file.seenBy("pdfinfo FILE"), HasSubstr("A\uFFFD\uFFFD\n"));
    EXPECT_EQ(textOf(file), "A\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDb\uFFFD1");
}

} // namespace
} // namespace varnic
