#include "VarnicCore/Editor/NoteEditor.h"
#include "VarnicCore/Text/TextKit.h"

#include <fmt/ranges.h>

#include <iterator>

namespace varnic::NoteEditor {

namespace {

constexpr std::size_t wordsPerMinute = 230;

std::string plainText(const Block& block) {
    switch (block.kind) {
    case BlockKind::table: {
        std::vector<std::string> lines;
        for (const auto& row : block.rows) {
            lines.push_back(fmt::format("{}", fmt::join(row, " ")));
        }
        return fmt::format("{}", fmt::join(lines, "\n"));
    }
    case BlockKind::divider:
        return {};
    case BlockKind::flashcard:
        return block.text + '\n' + block.back;
    default:
        return block.text;
    }
}

} // namespace

std::string plainText(const Note& note) {
    std::vector<std::string> pieces;
    for (const Block& block : note.blocks) {
        if (std::string piece = plainText(block); !piece.empty()) {
            pieces.push_back(std::move(piece));
        }
    }
    return fmt::format("{}", fmt::join(pieces, "\n"));
}

std::size_t wordCount(const Note& note) {
    return TextKit::wordCount(note.title + '\n' + plainText(note));
}

std::size_t readingMinutes(const Note& note) {
    return (wordCount(note) + wordsPerMinute - 1) / wordsPerMinute;
}

} // namespace varnic::NoteEditor
