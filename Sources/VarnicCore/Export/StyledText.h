#pragma once

#include "VarnicCore/Models/Date.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace varnic {

/// A colour in sRGB, opaque; each part 0 to 1.
struct Colour {
    double red = 0;
    double green = 0;
    double blue = 0;

    static constexpr Colour white(double level) { return {level, level, level}; }

    bool operator==(const Colour&) const = default;
};

/// Vollkorn, Inter, and Inter with tabular figures.
enum class Typeface { serif, sans, digits };

struct Font {
    Typeface typeface = Typeface::serif;
    /// Points.
    double size = 12;
    bool semibold = false;
    bool italic = false;

    bool operator==(const Font&) const = default;
};

/// A stretch of text that looks the same throughout.
struct Run {
    std::string text;
    Font font;
    Colour colour;
    bool struckThrough = false;

    bool operator==(const Run&) const = default;
};

/// From one tab stop to the next, in points, where a paragraph has none of its own.
inline constexpr double tabInterval = 28;

enum class Alignment { leading, centred };

/// What a paragraph is in the document's outline, for formats that hold more than looks.
enum class ParagraphRole { text, title, heading, subheading };

/// All lengths in points; indents count from the side where the text begins.
struct ParagraphStyle {
    double before = 0;
    double after = 0;
    double firstLineIndent = 0;
    /// Of the lines after the first.
    double headIndent = 0;
    double lineHeightMultiple = 1.15;
    /// Beyond it, or without one, a tab goes to the next multiple of `tabInterval`.
    std::optional<double> tabStop;
    Alignment alignment = Alignment::leading;
    ParagraphRole role = ParagraphRole::text;

    bool operator==(const ParagraphStyle&) const = default;
};

/// Made by StyledText alone, which guarantees what is said here.
struct Paragraph {
    /// At least one. The texts are well-formed UTF-8 without newlines and control characters, but for tabs, and U+2028
    /// for a line break.
    std::vector<Run> runs;
    ParagraphStyle style;
    /// Whether the first letter that has a direction runs from right to left.
    bool isRightToLeft = false;

    bool operator==(const Paragraph&) const = default;
};

/// A table across the whole width, in columns of one width; the first row is its header.
struct StyledTable {
    std::size_t columns = 0;
    /// Each of `columns` cells.
    std::vector<std::vector<Paragraph>> rows;

    /// Points.
    static constexpr double borderWidth = 0.5;
    static constexpr double padding = 4;
    static constexpr Colour border = Colour::white(0.75);
    static constexpr Colour headerBackground = Colour::white(0.94);

    bool operator==(const StyledTable&) const = default;
};

/// A text with its looks, which PDF, RTF and Word files are written from. It takes any bytes: what cannot be shown
/// (malformed UTF-8, control characters) becomes U+FFFD. A value.
class StyledText {
public:
    using Item = std::variant<Paragraph, StyledTable>;

    StyledText() = default;
    /// The facts become the file's properties.
    StyledText(std::string_view title, Date created, Date modified);

    /// Adds the runs, of which there must be one, as a paragraph; each newline in them begins another of the same
    /// style.
    void add(const std::vector<Run>& runs, const ParagraphStyle& style = {});

    /// Adds a table of cells with one run each, as many in every row.
    void addTable(const std::vector<std::vector<Run>>& rows);

    /// Adds all items of another text.
    void add(StyledText other);

    [[nodiscard]] const std::vector<Item>& items() const { return items_; }

    [[nodiscard]] const std::string& title() const { return title_; }

    /// In the form "2026-03-14T09:26:53Z".
    [[nodiscard]] std::string created() const;
    [[nodiscard]] std::string modified() const;

    /// The text with line breaks in place of its newlines, so that it stays one paragraph.
    static std::string withLineBreaks(std::string_view text);

private:
    std::vector<Item> items_;
    std::string title_;
    Date created_;
    Date modified_;
};

/// U+2028, in UTF-8.
inline constexpr std::string_view lineBreak = "\u2028";

} // namespace varnic
