#include "VarnicCore/Editor/BlockSelection.h"

#include "VarnicCore/Editor/BlockAccess.h"
#include "VarnicCore/Editor/TypedForms.h"
#include "VarnicCore/Export/Exporter.h"
#include "VarnicCore/Text/Unicode.h"

#include <fmt/ranges.h>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace varnic::BlockSelection {

namespace {

using NoteEditor::setText;

/// What a span that is in order holds.
struct Held {
    TextSpan span;
    /// The blocks that it touches, by their indexes.
    std::size_t first = 0;
    std::size_t last = 0;
    /// It is in one text, perhaps empty.
    bool isInOneText = false;
};

std::optional<Held> held(const TextSpan& span, const Note& note) {
    const TextSpan inOrder = ordered(span.from, span.to, note);
    const auto first = std::ranges::find(note.blocks, inOrder.from.block, &Block::id);
    const auto last = std::ranges::find(note.blocks, inOrder.to.block, &Block::id);
    if (first == note.blocks.end() || last == note.blocks.end()) {
        return std::nullopt;
    }
    return Held{.span = inOrder,
                .first = static_cast<std::size_t>(first - note.blocks.begin()),
                .last = static_cast<std::size_t>(last - note.blocks.begin()),
                .isInOneText = first == last && hasTextLine(first->kind)};
}

/// The place to write in where the blocks at the index have gone.
TextPlace placeAt(std::size_t index, Note& note) {
    if (index > 0 && hasTextLine(note.blocks[index - 1].kind)) {
        const Block& previous = note.blocks[index - 1];
        return {previous.id, previous.text.size()};
    }
    const auto next = note.blocks.begin() + static_cast<std::ptrdiff_t>(index);
    if (next != note.blocks.end() && hasTextLine(next->kind)) {
        return {next->id, 0};
    }
    return {note.blocks.insert(next, Block{})->id, 0};
}

/// The text on one line, with nothing in it that separates cells.
std::string asCell(std::string_view text) {
    std::string cell;
    for (const std::string_view piece :
         Unicode::split(text, [](char32_t c) { return c == '\t' || Unicode::isNewline(c); })) {
        cell.append(cell.empty() ? "" : " ").append(piece);
    }
    return cell;
}

std::string plainLines(const Block& block) {
    switch (block.kind) {
    case BlockKind::todo:
        return (block.done ? "- [x] " : "- [ ] ") + block.text;
    case BlockKind::bullet:
        return "- " + block.text;
    case BlockKind::quote:
        return "> " + block.text;
    case BlockKind::divider:
        return "---";
    case BlockKind::flashcard:
        return block.back.empty() ? block.text
                                  : fmt::format("{}{}{}", block.text, NoteEditor::cardSeparator, block.back);
    case BlockKind::table: {
        std::vector<std::string> lines;
        for (const auto& row : block.rows) {
            std::vector<std::string> cells(row.size());
            std::ranges::transform(row, cells.begin(), asCell);
            lines.push_back(fmt::format("{}", fmt::join(cells, "\t")));
        }
        return fmt::format("{}", fmt::join(lines, "\n"));
    }
    default:
        return block.text;
    }
}

} // namespace

std::vector<Block> blocks(const TextSpan& span, const Note& note) {
    const auto what = held(span, note);
    if (!what) {
        return {};
    }
    const auto& [from, to] = what->span;
    if (what->isInOneText) {
        Block piece;
        piece.text = note.blocks[what->first].text.substr(from.offset, to.offset - from.offset);
        return piece.text.empty() ? std::vector<Block>{} : std::vector{std::move(piece)};
    }
    const auto begin = note.blocks.begin() + static_cast<std::ptrdiff_t>(what->first);
    const auto end = note.blocks.begin() + static_cast<std::ptrdiff_t>(what->last) + 1;
    std::vector<Block> pieces(begin, end);
    const auto isNothing = [](const Block& block) { return hasTextLine(block.kind) && block.text.empty(); };
    if (hasTextLine(pieces.back().kind)) {
        pieces.back().text.erase(to.offset);
    }
    pieces.front().text.erase(0, from.offset);
    if (isNothing(pieces.back())) {
        pieces.pop_back();
    }
    if (!pieces.empty() && isNothing(pieces.front())) {
        pieces.erase(pieces.begin());
    }
    return pieces;
}

std::string markdown(const TextSpan& span, const Note& note, const ExportOptions& options) {
    const auto what = held(span, note);
    const std::vector<Block> pieces = blocks(span, note);
    return what && what->isInOneText && !pieces.empty() ? pieces.front().text
                                                        : Exporter::markdown(pieces, note, options);
}

std::string plainText(const TextSpan& span, const Note& note) {
    std::vector<std::string> lines;
    std::ranges::transform(blocks(span, note), std::back_inserter(lines), plainLines);
    return fmt::format("{}", fmt::join(lines, "\n"));
}

TextPlace remove(const TextSpan& span, Note& note, Date now) {
    const auto what = held(span, note);
    if (!what) {
        return span.from;
    }
    const auto& [from, to] = what->span;
    if (what->isInOneText && from == to) {
        return from;
    }
    Block& first = note.blocks[what->first];
    Block& last = note.blocks[what->last];
    const bool staysFirst = hasTextLine(first.kind);
    const bool staysLast = !staysFirst && hasTextLine(last.kind);
    const std::string rest = hasTextLine(last.kind) ? last.text.substr(to.offset) : std::string();
    if (staysFirst) {
        setText(first, first.text.substr(0, from.offset) + rest);
    } else if (staysLast) {
        setText(last, rest);
    }
    const auto begin = note.blocks.begin() + static_cast<std::ptrdiff_t>(what->first + (staysFirst ? 1 : 0));
    const auto end = note.blocks.begin() + static_cast<std::ptrdiff_t>(what->last + (staysLast ? 0 : 1));
    note.blocks.erase(begin, end);
    note.modified = now;
    if (staysFirst) {
        return from;
    }
    return staysLast ? TextPlace{to.block, 0} : placeAt(what->first, note);
}

void move(const TextSpan& span, int offset, Note& note, Date now) {
    const auto what = held(span, note);
    if (!what) {
        return;
    }
    const auto before = static_cast<std::ptrdiff_t>(what->first);
    const auto behind = static_cast<std::ptrdiff_t>(note.blocks.size() - what->last) - 1;
    const auto by = std::clamp(static_cast<std::ptrdiff_t>(offset), -before, behind);
    if (by == 0) {
        return;
    }
    const auto first = note.blocks.begin() + before;
    const auto end = note.blocks.begin() + static_cast<std::ptrdiff_t>(what->last) + 1;
    by < 0 ? std::rotate(first + by, first, end) : std::rotate(first, end, end + by);
    note.modified = now;
}

} // namespace varnic::BlockSelection
