#include "VarnicCore/Export/Exporter.h"
#include "VarnicCore/Export/ReadBack.h"
#include "VarnicCore/Export/RichNote.h"

#include <gmock/gmock.h>
#include <pugixml.hpp>

#include <algorithm>
#include <string>
#include <vector>

namespace varnic {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;

std::string dataOf(const Note& note, ExportFormat format) {
    return Exporter::data(note, format, {true, true, "Sam"}, Region{});
}

/// A note whose texts hold everything that a file format could trip over.
Note badNote() {
    return RichNote::of(
        {RichNote::block(BlockKind::paragraph, "a\x01\xFF\xED\xA0\x80]]><&\"{\\}" + std::string(1, '\0')),
         Block::table({{"x\ty\nz"}, {"", "{\\par}"}})},
        "<T> {\\b} \x02\xFF");
}

TEST(Rtf, anyText_isPlainAsciiInMatchedBraces) {
    for (const Note& note : {RichNote::call(), badNote(), RichNote::of({})}) {
        const std::string rtf = dataOf(note, ExportFormat::rtf);
        EXPECT_TRUE(std::ranges::all_of(rtf, [](char c) { return c == '\n' || (c >= 0x20 && c < 0x7F); }));
        int depth = 0;
        for (auto c = rtf.begin(); c != rtf.end(); ++c) {
            if (*c == '\\') {
                ++c; // a brace behind it is text
            } else if (*c == '{' || *c == '}') {
                depth += *c == '{' ? 1 : -1;
                EXPECT_GE(depth, c + 2 == rtf.end() ? 0 : 1);
            }
        }
        EXPECT_EQ(depth, 0);
    }
}

TEST(Rtf, looks_areThoseOfTheText) {
    const std::string rtf = dataOf(RichNote::call(), ExportFormat::rtf);
    for (const std::string piece :
         {"\\paperw11900\\paperh16840\\margl1120", "\\red31\\green36\\blue51;",
          "\\fs48\\cf1\\ab\\b Q3 & \\u8220?launch", "\\sb200\\sa120\\sl276\\slmult1", "\\fi-360\\li400\\lin400\\tx400",
          "\\u-10180?\\u-8311?", "\\strike Confirm", "\\clcbpat", "\\cell\n\\row",
          "Br\\u252?cke \\{x\\} \\\\ \\u20170?", "\\rtlpar\\qr", "a\\line b"}) {
        EXPECT_THAT(rtf, HasSubstr(piece));
    }
}

TEST(Docx, parts_areValidAndTheSameEveryTime) {
    for (const Note& note : {RichNote::call(), badNote(), RichNote::of({})}) {
        const std::string docx = dataOf(note, ExportFormat::docx);
        EXPECT_EQ(docx, dataOf(note, ExportFormat::docx));
        const ReadBack::File file(docx, "note.docx");
        EXPECT_THAT(file.seenBy("unzip -t FILE"), HasSubstr("No errors detected"));
        for (const std::string part :
             {"\\[Content_Types\\].xml", "_rels/.rels", "docProps/core.xml", "word/document.xml",
              "word/_rels/document.xml.rels", "word/styles.xml", "word/settings.xml", "word/fontTable.xml"}) {
            pugi::xml_document document;
            EXPECT_TRUE(document.load_string(file.seenBy("unzip -p FILE '" + part + "'").c_str())) << part;
        }
    }
}

TEST(Docx, paragraphs_haveWordsHeadingsAndTheTextsLooks) {
    const ReadBack::File file(dataOf(RichNote::call(), ExportFormat::docx), "note.docx");
    pugi::xml_document document;
    ASSERT_TRUE(document.load_string(file.seenBy("unzip -p FILE word/document.xml").c_str()));
    const auto style = [&document](const std::string& text) -> std::string {
        const std::string path = "//w:p[w:r/w:t='" + text + "']/w:pPr/w:pStyle";
        return document.select_node(path.c_str()).node().attribute("w:val").value();
    };
    EXPECT_EQ(style("Q3 & “launch”"), "Title");
    EXPECT_EQ(style("Plan"), "Heading1");
    EXPECT_EQ(style("Detail"), "Heading2");
    EXPECT_EQ(style("Transcript"), "Heading1");
    EXPECT_EQ(style("Said"), "Normal");
    EXPECT_TRUE(document.select_nodes("//w:tbl|//w:numPr").empty());
    EXPECT_FALSE(
        document.select_node("//w:r[w:t='Confirm'][w:rPr/w:strike][w:rPr/w:color/@w:val='6B7080']").node().empty());
    EXPECT_FALSE(document.select_node("//w:r[w:t='Confirm']/w:rPr/w14:numForm[@w14:val='lining']").node().empty());
    EXPECT_FALSE(document.select_node("//w:pgSz[@w:w='11900'][@w:h='16840']").node().empty());
    EXPECT_FALSE(document.select_node("//w:p[w:r/w:t='Name']/w:r[w:tab]/w:t[.='Price']").node().empty());
    EXPECT_FALSE(document.select_node("//w:p[w:pPr/w:bidi]/w:r/w:rPr/w:rtl").node().empty());
    const std::string facts = file.seenBy("unzip -p FILE docProps/core.xml");
    EXPECT_THAT(facts, HasSubstr("<dc:title>Q3 &amp; “launch”</dc:title><dc:creator>Varnic</dc:creator>"));
    EXPECT_THAT(file.seenBy("unzip -p FILE word/styles.xml"), ContainsRegex("heading 1.*outlineLvl w:val=\"0\""));
}

/// One run of LibreOffice in a home of its own turns all files of a folder into another kind.
void convert(const std::filesystem::path& folder, const std::string& kind) {
    ReadBack::outputOf("cd '" + folder.string() + "' && soffice -env:UserInstallation=file://" + folder.string() +
                       "/home --headless --convert-to " + kind + " *.rtf *.docx");
}

TEST(WordFiles, libreOffice_readsTheSameTextAndLooks) {
    const TemporaryFolder folder;
    std::ofstream(folder.path() / "r.rtf", std::ios::binary) << dataOf(RichNote::call(), ExportFormat::rtf);
    std::ofstream(folder.path() / "d.docx", std::ios::binary) << dataOf(RichNote::call(), ExportFormat::docx);
    convert(folder.path(), "pdf");
    convert(folder.path(), "fodt");
    for (const std::string name : {"r", "d"}) {
        const ReadBack::File pdf(ReadBack::bytesOf(folder.path() / (name + ".pdf")), "note.pdf");
        const std::string text = ReadBack::squeezed(pdf.seenBy("pdftotext FILE -"));
        for (const std::string piece :
             {"Q3&“launch”", "Brücke{x}\\今日", "☐Sam·Senddesigns(Friday)", "Maya·Confirm", "•Point", "QFront", "ABack",
              "extra", "⁂", "بالعالم", "Subject:Notes", "Maya1:05"}) {
            EXPECT_THAT(text, HasSubstr(piece)) << name;
        }
        EXPECT_THAT(pdf.seenBy("pdffonts FILE"), HasSubstr("Vollkorn-Italic")) << name;
        EXPECT_THAT(pdf.seenBy("pdfinfo FILE"), HasSubstr("(A4)")) << name;
        const std::string open = ReadBack::bytesOf(folder.path() / (name + ".fodt"));
        EXPECT_THAT(open, ContainsRegex("<text:h [^>]*text:outline-level=\"1\"[^>]*>(<[^>]*>)*Plan")) << name;
        EXPECT_THAT(open, ContainsRegex("<text:h [^>]*text:outline-level=\"2\"[^>]*>(<[^>]*>)*Detail")) << name;
        EXPECT_EQ(open.find("<table:table ") != std::string::npos, name == "r");
        EXPECT_THAT(open, HasSubstr("fo:color=\"#1f2433\"")) << name;
    }
}

} // namespace
} // namespace varnic
