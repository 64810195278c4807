#include "VarnicCore/Export/ExportParts.h"
#include "VarnicCore/Export/Exporter.h"
#include "VarnicCore/Models/Clock.h"

#include <algorithm>
#include <utility>

namespace varnic::Exporter {

namespace {

using Rows = std::vector<std::vector<std::string>>;

/// The most columns that Word reads.
constexpr std::size_t mostColumns = 63;

constexpr Font sans(double size, bool bold = false) {
    return {.typeface = Typeface::sans, .size = size, .semibold = bold};
}

const Font body = serif(12);
constexpr Font cellFont = sans(10.5);
constexpr Font headerFont = sans(10.5, true);

Colour colourOf(Speaker speaker) {
    return speaker == Speaker::you ? you : them;
}

constexpr ParagraphStyle spaced(double before, double after) {
    return {.before = before, .after = after};
}

constexpr ParagraphStyle indented(double firstLine, double head, double before, double after) {
    return {.before = before, .after = after, .firstLineIndent = firstLine, .headIndent = head};
}

/// A paragraph after a mark: the text begins at the head indent.
constexpr ParagraphStyle listItem(double firstLine, double head) {
    ParagraphStyle style = indented(firstLine, head, 0, 3);
    style.tabStop = head;
    return style;
}

constexpr ParagraphStyle inRole(ParagraphRole role, ParagraphStyle style) {
    style.role = role;
    return style;
}

constexpr ParagraphStyle headingStyle(double before) {
    return inRole(ParagraphRole::heading, spaced(before, 6));
}

std::string joinedByTabs(const std::vector<std::string>& cells) {
    std::string line;
    for (const std::string& cell : cells) {
        line += (&cell == &cells.front() ? "" : "\t") + StyledText::withLineBreaks(cell);
    }
    return line;
}

/// The rows as lines with tabs between the cells, the first in `bold`.
void addLines(StyledText& text, const Rows& rows, const Font& font, const Font& bold, const Colour& colour) {
    for (const auto& row : rows) {
        text.add({{joinedByTabs(row), &row == &rows.front() ? bold : font, colour}}, spaced(0, 2));
    }
}

/// Adds a note to a text, part by part.
class Builder {
public:
    Builder(const Note& note, const ExportOptions& options, bool forWord)
        : note_(note), options_(options), forWord_(forWord), text_(note.displayTitle(), note.created, note.modified) {}

    StyledText build(const Region& region) {
        add(note_.displayTitle(), serif(24, true), ink, inRole(ParagraphRole::title, spaced(0, 4)));
        if (note_.call) {
            add(metaLine(*note_.call, region), sans(10), muted, spaced(0, 14));
        } else {
            add("", sans(6), ink, spaced(0, 6));
        }
        for (const Block& block : note_.blocks) {
            addBlock(block);
        }
        addEmail();
        addTranscript();
        return std::move(text_);
    }

private:
    void add(std::string text, const Font& font, const Colour& colour, const ParagraphStyle& style) {
        text_.add({{std::move(text), font, colour}}, style);
    }

    void addBlock(const Block& block) {
        switch (block.kind) {
        case BlockKind::paragraph:
            add(block.text, body, ink, spaced(0, 6));
            break;
        case BlockKind::heading:
            add(block.text, serif(17, true), ink, headingStyle(10));
            break;
        case BlockKind::subheading:
            add(block.text, serif(14, true), ink, inRole(ParagraphRole::subheading, spaced(6, 4)));
            break;
        case BlockKind::todo:
            addTodo(block);
            break;
        case BlockKind::bullet:
            add("•\t" + block.text, body, ink, listItem(4, 18));
            break;
        case BlockKind::quote:
            add(block.text, serif(12, false, true), muted, indented(18, 18, 0, 6));
            break;
        case BlockKind::flashcard:
            add("Q  " + block.text, serif(12, true), ink, indented(14, 14, 4, 1));
            add("A  " + block.back, body, ink, indented(14, 14, 0, 8));
            break;
        case BlockKind::table:
            addTable(block.rows);
            break;
        case BlockKind::divider:
            addDivider();
            break;
        }
    }

    void addDivider() {
        ParagraphStyle style = spaced(6, 10);
        style.alignment = Alignment::centred;
        add("⁂", body, muted, style);
    }

    void addTodo(const Block& todo) {
        const Colour colour = todo.done ? muted : ink;
        std::vector<Run> runs{{todo.done ? "☑\t" : "☐\t", body, colour, todo.done}};
        if (todo.owner) {
            const std::string name = ExportParts::nameOf(*todo.owner, note_, options_);
            runs.push_back({name + " · ", sans(9), colourOf(*todo.owner), todo.done});
        }
        runs.push_back({todo.text + (todo.due ? "  (" + *todo.due + ")" : ""), body, colour, todo.done});
        text_.add(runs, listItem(2, 20));
    }

    void addTable(const Rows& rows) {
        if (forWord_) {
            addLines(text_, rows, cellFont, headerFont, ink);
            add("", body, ink, spaced(0, 4));
        } else {
            text_.add(table(rows, cellFont, headerFont, ink));
        }
    }

    void addEmail() {
        if (const EmailDraft* email = ExportParts::email(note_, options_)) {
            add("Follow-up email", serif(17, true), ink, headingStyle(14));
            add("Subject: " + email->subject, headerFont, ink, spaced(0, 4));
            add(email->body, cellFont, ink, spaced(0, 8));
        }
    }

    void addTranscript() {
        const std::vector<Segment> turns = ExportParts::transcript(note_, options_);
        if (!turns.empty()) {
            add("Transcript", serif(17, true), ink, headingStyle(14));
        }
        for (const Segment& turn : turns) {
            text_.add(
                {{ExportParts::nameOf(turn.speaker, note_, options_) + "  ", sans(10, true), colourOf(turn.speaker)},
                 {Clock::stamp(turn.start) + "\n", {.typeface = Typeface::digits, .size = 9}, muted},
                 {turn.text, body, ink}},
                spaced(0, 6));
        }
    }

    const Note& note_;
    const ExportOptions& options_;
    bool forWord_;
    StyledText text_;
};

} // namespace

Font serif(double size, bool bold, bool italic) {
    return {.typeface = Typeface::serif, .size = size, .semibold = bold, .italic = italic};
}

StyledText table(const Rows& rows, const Font& font, const Font& bold, const Colour& colour) {
    std::size_t width = 0;
    for (const auto& row : rows) {
        width = std::max(width, row.size());
    }
    StyledText text;
    if (width == 0) {
        return text;
    }
    if (width > mostColumns) {
        addLines(text, rows, font, bold, colour);
    } else {
        std::vector<std::vector<Run>> cells;
        for (const auto& row : rows) {
            auto& runs = cells.emplace_back();
            for (std::size_t column = 0; column < width; ++column) {
                runs.push_back({column < row.size() ? row[column] : "", cells.size() == 1 ? bold : font, colour});
            }
        }
        text.addTable(cells);
    }
    text.add({{"", {.typeface = Typeface::sans, .size = 4}, colour}}, spaced(0, 4));
    return text;
}

StyledText attributed(const Note& note, const ExportOptions& options, bool forWord, const Region& region) {
    return Builder(note, options, forWord).build(region);
}

} // namespace varnic::Exporter
