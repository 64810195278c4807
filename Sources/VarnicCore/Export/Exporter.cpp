#include "VarnicCore/Export/Exporter.h"

#include "VarnicCore/Export/ExportParts.h"
#include "VarnicCore/Models/Clock.h"
#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace varnic::Exporter {

namespace {

using ExportParts::nameOf;

constexpr std::size_t longestName = 80;

bool isRefusedInFileNames(char c) {
    constexpr std::string_view refused = R"(/:\?%*|"<>)";
    return (c >= 0 && c < 0x20) || refused.find(c) != std::string_view::npos;
}

bool isFileNameEdge(char32_t c) {
    return c == U' ' || c == U'.' || c == U'-';
}

/// Keeps a text from being read back as another kind of block.
std::string escaped(const std::string& text) {
    constexpr std::string_view marks = "#>-*+";
    // With a combining mark after it, as in a keycap emoji, the byte is not the whole character.
    if (!text.empty() && marks.find(text.front()) != std::string_view::npos &&
        Unicode::firstCharacters(text, 1).size() == 1) {
        return "\\" + text;
    }
    return text;
}

std::string replaceAll(std::string_view text, char what, std::string_view with) {
    std::string result;
    result.reserve(text.size());
    for (const char c : text) {
        c == what ? result.append(with) : result.append(1, c);
    }
    return result;
}

std::string newlinesAsSpaces(const std::string& text) {
    if (!Unicode::any(text, Unicode::isNewline)) {
        return text;
    }
    icu::UnicodeString wide = Unicode::utf16(text);
    for (std::int32_t i = 0; i < wide.length(); ++i) {
        if (Unicode::isNewline(wide[i])) {
            wide.setCharAt(i, u' ');
        }
    }
    return Unicode::utf8(wide);
}

/// The lines of the file, which the functions below add to in the order of the file.
using Lines = std::vector<std::string>;

void addSpaced(Lines& lines, std::string line) {
    lines.push_back(std::move(line));
    lines.emplace_back();
}

/// Who owes a to-do and when, after its text; empty when neither is known.
std::string tagOf(const Block& todo, const Note& note, const ExportOptions& options) {
    std::vector<std::string> parts;
    if (todo.owner) {
        parts.push_back("@" + nameOf(*todo.owner, note, options));
    }
    if (todo.due) {
        parts.push_back("due " + *todo.due);
    }
    return parts.empty() ? "" : fmt::format(" _({})_", fmt::join(parts, ", "));
}

std::string rowLine(const std::vector<std::string>& row, std::size_t width) {
    std::vector<std::string> cells(width);
    std::ranges::transform(row, cells.begin(),
                           [](const std::string& cell) { return replaceAll(newlinesAsSpaces(cell), '|', "\\|"); });
    return fmt::format("| {} |", fmt::join(cells, " | "));
}

void addTable(Lines& lines, const std::vector<std::vector<std::string>>& rows) {
    std::size_t width = 0;
    for (const auto& row : rows) {
        width = std::max(width, row.size());
    }
    if (width > 0) {
        lines.push_back(rowLine(rows.front(), width));
        std::string separator = "|";
        for (std::size_t column = 0; column < width; ++column) {
            separator += " --- |";
        }
        lines.push_back(std::move(separator));
        for (std::size_t row = 1; row < rows.size(); ++row) {
            lines.push_back(rowLine(rows[row], width));
        }
    }
    lines.emplace_back();
}

void addBlock(Lines& lines, const Block& block, const Note& note, const ExportOptions& options) {
    switch (block.kind) {
    case BlockKind::paragraph:
        addSpaced(lines, escaped(block.text));
        break;
    case BlockKind::heading:
        addSpaced(lines, "## " + block.text);
        break;
    case BlockKind::subheading:
        addSpaced(lines, "### " + block.text);
        break;
    case BlockKind::quote:
        addSpaced(lines, "> " + block.text);
        break;
    case BlockKind::todo:
        lines.push_back((block.done ? "- [x] " : "- [ ] ") + escaped(block.text) + tagOf(block, note, options));
        break;
    case BlockKind::bullet:
        lines.push_back("- " + escaped(block.text));
        break;
    case BlockKind::table:
        addTable(lines, block.rows);
        break;
    case BlockKind::flashcard:
        lines.push_back("**Q:** " + escaped(block.text));
        addSpaced(lines, "**A:** " + escaped(block.back));
        break;
    case BlockKind::divider:
        addSpaced(lines, "---");
        break;
    }
}

bool isListItem(const Block& block) {
    return block.kind == BlockKind::todo || block.kind == BlockKind::bullet;
}

/// The items of one list follow each other without blank lines.
void addBlocks(Lines& lines, const std::vector<Block>& blocks, const Note& note, const ExportOptions& options) {
    for (auto block = blocks.begin(); block != blocks.end(); ++block) {
        addBlock(lines, *block, note, options);
        const auto next = block + 1;
        if (isListItem(*block) && (next == blocks.end() || next->kind != block->kind)) {
            lines.emplace_back();
        }
    }
}

void addEmail(Lines& lines, const EmailDraft& email) {
    addSpaced(lines, "## Follow-up email");
    addSpaced(lines, "**Subject:** " + email.subject);
    addSpaced(lines, "> " + replaceAll(email.body, '\n', "\n> "));
}

void addTranscript(Lines& lines, const Note& note, const ExportOptions& options) {
    const std::vector<Segment> turns = ExportParts::transcript(note, options);
    if (turns.empty()) {
        return;
    }
    addSpaced(lines, "## Transcript");
    for (const Segment& turn : turns) {
        addSpaced(lines, fmt::format("**{}** [{}]: {}", nameOf(turn.speaker, note, options), Clock::stamp(turn.start),
                                     escaped(turn.text)));
    }
}

/// The lines as one text without newlines at its end.
std::string joined(const Lines& lines) {
    std::string text = fmt::format("{}", fmt::join(lines, "\n"));
    text.erase(text.find_last_not_of('\n') + 1);
    return text;
}

} // namespace

std::string fileName(const Note& note, ExportFormat format) {
    std::string name = note.displayTitle();
    std::ranges::replace_if(name, isRefusedInFileNames, '-');
    const std::string_view trimmed = Unicode::trim(name, isFileNameEdge);
    const std::string_view stem = trimmed.empty() ? "Note" : Unicode::firstCharacters(trimmed, longestName);
    return fmt::format("{}.{}", stem, fileExtension(format));
}

std::string fittingFileName(const Note& note, ExportFormat format) {
    constexpr std::size_t mostBytes = 250; // file systems take 255
    const std::string name = fileName(note, format);
    if (name.size() <= mostBytes) {
        return name;
    }
    const std::string extension = fmt::format(".{}", fileExtension(format));
    const std::string_view stem(name.data(), name.size() - extension.size());
    const std::vector<std::size_t> starts = Unicode::characterStarts(stem);
    const std::size_t end = *std::prev(std::ranges::upper_bound(starts, mostBytes - extension.size()));
    return (end == 0 ? "Note" : std::string(stem.substr(0, end))) + extension;
}

std::string metaLine(const CallRecord& call, const Region& region) {
    std::string line =
        fmt::format("{} · {} · {}", call.source, region.format(call.startedAt, "EEEE d MMMM yyyy, HH:mm"),
                    Clock::length(call.duration));
    if (call.digest) {
        line += " · Summary by " + call.digest->provider;
    }
    return line;
}

std::string markdown(const Note& note, const ExportOptions& options, const Region& region) {
    Lines lines;
    addSpaced(lines, "# " + note.displayTitle());
    if (note.call) {
        addSpaced(lines, "*" + metaLine(*note.call, region) + "*");
    }
    addBlocks(lines, note.blocks, note, options);
    if (const EmailDraft* email = ExportParts::email(note, options)) {
        addEmail(lines, *email);
    }
    addTranscript(lines, note, options);
    return joined(lines) + "\n";
}

std::string markdown(const std::vector<Block>& blocks, const Note& note, const ExportOptions& options) {
    Lines lines;
    addBlocks(lines, blocks, note, options);
    return joined(lines);
}

} // namespace varnic::Exporter
