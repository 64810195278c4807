#pragma once

#include "VarnicCore/Editor/TextPlace.h"
#include "VarnicCore/Models/Note.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Notes written as their blocks' lines, for tests of what editing makes of them.
namespace varnic::blockNotes {

inline const Date created = parseDate("2026-03-14T09:00:00Z");
inline const Date later = parseDate("2026-03-14T10:00:00Z");

inline Block block(BlockKind kind, std::string text = {}) {
    Block made;
    made.kind = kind;
    made.text = std::move(text);
    return made;
}

/// "kind: text", and what else the block shows: "todo: [x] text", "flashcard: front / back", "table: a,b;c,d".
inline std::string line(const Block& block) {
    std::string shown = std::string(rawValue(block.kind)) + ": " + (block.done ? "[x] " : "") + block.text;
    if (block.kind == BlockKind::flashcard) {
        shown += " / " + block.back;
    }
    for (std::size_t row = 0; row < block.rows.size(); ++row) {
        shown += row > 0 ? ";" : "";
        for (std::size_t column = 0; column < block.rows[row].size(); ++column) {
            shown += (column > 0 ? "," : "") + block.rows[row][column];
        }
    }
    return shown;
}

inline std::vector<std::string> lines(const std::vector<Block>& blocks) {
    std::vector<std::string> shown;
    for (const Block& one : blocks) {
        shown.push_back(line(one));
    }
    return shown;
}

inline std::vector<std::string> lines(const Note& note) {
    return lines(note.blocks);
}

/// The block that `line` shows so, with "P: ", "H: ", "T: ", "X: " (ticked), "B: ", "Q: " for the kinds of text, "---",
/// "C: front / back" and "|cell".
inline Block blockOf(std::string_view shown) {
    if (shown == "---") {
        return block(BlockKind::divider);
    }
    if (shown.starts_with('|')) {
        return Block::table({{std::string(shown.substr(1)), ""}, {"", ""}});
    }
    const std::string text(shown.substr(3));
    switch (shown.front()) {
    case 'H':
        return block(BlockKind::heading, text);
    case 'B':
        return block(BlockKind::bullet, text);
    case 'Q':
        return block(BlockKind::quote, text);
    case 'C':
        return Block::flashcard(text.substr(0, text.find(" / ")), text.substr(text.find(" / ") + 3));
    case 'T':
    case 'X': {
        Block todo = block(BlockKind::todo, text);
        todo.done = shown.front() == 'X';
        return todo;
    }
    default:
        return block(BlockKind::paragraph, text);
    }
}

inline Note noteOf(std::vector<Block> blocks) {
    return {Uuid::random(), "", created, std::move(blocks)};
}

/// A note of blocks as `blockOf` reads them, and the places that are marked in their texts by "^".
struct Marked {
    Note note{created};
    std::vector<TextPlace> places;

    explicit Marked(const std::vector<std::string_view>& shown) {
        note.blocks.clear();
        for (const std::string_view one : shown) {
            Block made = blockOf(one.starts_with('^') ? one.substr(1) : one);
            if (one.starts_with('^')) {
                places.push_back({made.id, 0});
            }
            for (std::size_t mark = made.text.find('^'); mark != std::string::npos; mark = made.text.find('^')) {
                made.text.erase(mark, 1);
                places.push_back({made.id, mark});
            }
            note.blocks.push_back(std::move(made));
        }
    }

    [[nodiscard]] TextSpan span() const { return {places.front(), places.back()}; }
};

/// As `lines`, with "^" at the place, in front of a block that has no line of text.
inline std::vector<std::string> linesWith(const TextPlace& place, Note note) {
    std::vector<std::string> shown;
    for (Block& one : note.blocks) {
        const bool isHere = one.id == place.block;
        if (isHere && hasTextLine(one.kind)) {
            one.text.insert(place.offset, "^");
        }
        shown.push_back((isHere && !hasTextLine(one.kind) ? "^" : "") + line(one));
    }
    return shown;
}

} // namespace varnic::blockNotes
