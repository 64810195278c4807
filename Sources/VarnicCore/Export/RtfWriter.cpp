#include "VarnicCore/Export/RtfWriter.h"

#include "VarnicCore/Export/WordUnits.h"
#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <variant>
#include <vector>

namespace varnic::RtfWriter {

namespace {

using WordUnits::halfPoints;
using WordUnits::twips;

/// Fonts by number; a program without one takes the one named after it, or one of its family.
constexpr std::string_view fontTable = R"({\fonttbl{\f0\froman\fcharset0 Vollkorn{\*\falt Georgia};})"
                                       R"({\f1\fswiss\fcharset0 Inter{\*\falt Helvetica};}})";

struct Style {
    ParagraphRole role;
    std::string_view control;
    std::string_view name;
};

constexpr std::array styles{
    Style{ParagraphRole::text, "\\s0", "Normal"},
    Style{ParagraphRole::title, "\\s1", "Title"},
    Style{ParagraphRole::heading, "\\s2\\outlinelevel0", "heading 1"},
    Style{ParagraphRole::subheading, "\\s3\\outlinelevel1", "heading 2"},
};

std::string_view control(ParagraphRole role) {
    return std::ranges::find(styles, role, &Style::role)->control;
}

void appendUnit(std::string& out, char16_t unit) {
    // The number is a signed one; the question mark is for programs that know no Unicode.
    fmt::format_to(std::back_inserter(out), "\\u{}?", static_cast<std::int16_t>(unit));
}

void appendCharacter(std::string& out, char32_t c) {
    constexpr char32_t firstSupplementary = 0x10000;
    if (c == U'\t') {
        out += "\\tab ";
    } else if (c == U'\u2028') {
        out += "\\line ";
    } else if (c == U'\\' || c == U'{' || c == U'}') {
        out += '\\';
        out += static_cast<char>(c);
    } else if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < firstSupplementary) {
        appendUnit(out, static_cast<char16_t>(c));
    } else {
        const char32_t rest = c - firstSupplementary;
        appendUnit(out, static_cast<char16_t>(0xD800 + (rest >> 10)));
        appendUnit(out, static_cast<char16_t>(0xDC00 + (rest & 0x3FF)));
    }
}

std::string escaped(std::string_view text) {
    std::string out;
    for (std::size_t at = 0; at < text.size();) {
        appendCharacter(out, Unicode::next(text, at));
    }
    return out;
}

std::string_view alignment(const Paragraph& paragraph) {
    if (paragraph.style.alignment == Alignment::centred) {
        return "\\qc";
    }
    return paragraph.isRightToLeft ? "\\qr" : "\\ql";
}

/// The body, and the colours that it turned out to need.
class Body {
public:
    void add(const StyledText& text, double width) {
        for (const StyledText::Item& item : text.items()) {
            if (const auto* paragraph = std::get_if<Paragraph>(&item)) {
                addParagraph(*paragraph, "\\pard", "\\par");
            } else {
                addTable(std::get<StyledTable>(item), width);
            }
        }
    }

    [[nodiscard]] const std::string& text() const { return out_; }

    [[nodiscard]] std::string colourTable() const {
        std::string table = "{\\colortbl;";
        for (const Colour& colour : colours_) {
            const auto [red, green, blue] = WordUnits::bytes(colour);
            table += fmt::format("\\red{}\\green{}\\blue{};", red, green, blue);
        }
        return table + "}";
    }

private:
    /// The colour's number in the table, which begins with 1.
    std::ptrdiff_t number(const Colour& colour) {
        auto found = std::ranges::find(colours_, colour);
        if (found == colours_.end()) {
            found = colours_.insert(found, colour);
        }
        return found - colours_.begin() + 1;
    }

    void addParagraph(const Paragraph& paragraph, std::string_view begin, std::string_view end) {
        out_ += begin;
        addStyle(paragraph);
        for (const Run& run : paragraph.runs) {
            addRun(run, paragraph.isRightToLeft);
        }
        // The end takes on the looks of the last run, which an empty paragraph's height comes from.
        out_ += end;
        out_ += '\n';
    }

    void addStyle(const Paragraph& paragraph) {
        const ParagraphStyle& style = paragraph.style;
        out_ += fmt::format("\\plain{}{}{}\\sb{}\\sa{}\\sl{}\\slmult1", control(style.role),
                            paragraph.isRightToLeft ? "\\rtlpar" : "\\ltrpar", alignment(paragraph),
                            twips(style.before), twips(style.after), WordUnits::lines(style.lineHeightMultiple));
        if (style.firstLineIndent != 0 || style.headIndent != 0) {
            out_ += fmt::format("\\fi{0}\\{1}{2}\\lin{2}", twips(style.firstLineIndent - style.headIndent),
                                paragraph.isRightToLeft ? "ri" : "li", twips(style.headIndent));
        }
        if (style.tabStop) {
            out_ += fmt::format("\\tx{}", twips(*style.tabStop));
        }
    }

    void addRun(const Run& run, bool isRightToLeft) {
        const Font& font = run.font;
        const int family = font.typeface == Typeface::serif ? 0 : 1;
        const int size = halfPoints(font.size);
        // The looks of complex scripts, "a...", stand beside those of the others.
        out_ += fmt::format("\\plain{}\\af{}\\afs{}\\f{}\\fs{}\\cf{}{}{}{} ", isRightToLeft ? "\\rtlch" : "\\ltrch",
                            family, size, family, size, number(run.colour), font.semibold ? "\\ab\\b" : "",
                            font.italic ? "\\ai\\i" : "", run.struckThrough ? "\\strike" : "");
        out_ += escaped(run.text);
    }

    void addTable(const StyledTable& table, double width) {
        for (const auto& row : table.rows) {
            addRowDefinition(table, width, &row == &table.rows.front());
            for (const Paragraph& cell : row) {
                addParagraph(cell, "\\pard\\intbl", "\\cell");
            }
            out_ += "\\row\n";
        }
    }

    void addRowDefinition(const StyledTable& table, double width, bool isHeader) {
        out_ += fmt::format("\\trowd\\trleft0\\trftsWidth3\\trwWidth{}\\trautofit0{}\n", twips(width),
                            isHeader ? "\\trhdr" : "");
        const std::string border =
            fmt::format("\\brdrs\\brdrw{}\\brdrcf{}", twips(StyledTable::borderWidth), number(StyledTable::border));
        const std::string shade = isHeader ? fmt::format("\\clcbpat{}", number(StyledTable::headerBackground)) : "";
        for (std::size_t column = 1; column <= table.columns; ++column) {
            const double right = width * static_cast<double>(column) / static_cast<double>(table.columns);
            // The padding is each cell's: with that of the row, some programs would move the table to the left.
            out_ += fmt::format("\\clvertalt\\clbrdrt{0}\\clbrdrl{0}\\clbrdrb{0}\\clbrdrr{0}{1}"
                                "\\clpadl{2}\\clpadt{2}\\clpadr{2}\\clpadb{2}\\clpadfl3\\clpadft3\\clpadfr3\\clpadfb3"
                                "\\cellx{3}\n",
                                border, shade, twips(StyledTable::padding), twips(right));
        }
    }

    std::string out_;
    std::vector<Colour> colours_;
};

std::string styleSheet() {
    std::string sheet = "{\\stylesheet";
    for (const Style& style : styles) {
        sheet += fmt::format("{{{} {};}}", style.control, style.name);
    }
    return sheet + "}";
}

/// A moment such as "2026-03-14T09:26:53Z" in words of the format.
std::string time(std::string_view moment) {
    return fmt::format("\\yr{}\\mo{}\\dy{}\\hr{}\\min{}\\sec{}", moment.substr(0, 4), moment.substr(5, 2),
                       moment.substr(8, 2), moment.substr(11, 2), moment.substr(14, 2), moment.substr(17, 2));
}

std::string facts(const StyledText& text) {
    return fmt::format("{{\\*\\generator Varnic;}}{{\\info{{\\title {}}}{{\\creatim{}}}{{\\revtim{}}}}}",
                       escaped(text.title()), time(text.created()), time(text.modified()));
}

std::string page(PageSize size, double margin) {
    return fmt::format("\\paperw{0}\\paperh{1}\\margl{2}\\margr{2}\\margt{2}\\margb{2}\\deftab{3}", twips(size.width),
                       twips(size.height), twips(margin), twips(tabInterval));
}

} // namespace

std::string write(const StyledText& text, PageSize size, double margin) {
    Body body;
    body.add(text, size.width - 2 * margin);
    return fmt::format("{{\\rtf1\\ansi\\ansicpg1252\\uc1\\deff0\n{}\n{}\n{}\n{}\n{}\n{}}}\n", fontTable,
                       body.colourTable(), styleSheet(), facts(text), page(size, margin), body.text());
}

} // namespace varnic::RtfWriter
