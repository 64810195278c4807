#include "VarnicCore/Editor/BlockAccess.h"
#include "VarnicCore/Editor/BlockSelection.h"
#include "VarnicCore/Editor/NoteEditor.h"
#include "VarnicCore/Text/Unicode.h"

#include <iterator>
#include <utility>

namespace varnic::BlockSelection {

namespace {

using NoteEditor::findBlock;
using NoteEditor::setText;

std::optional<Uuid> pressReturn(Uuid id, Note& note, Date now) {
    const auto result = NoteEditor::pressReturn(id, note, now);
    return result ? std::optional(std::visit([](const auto& did) { return did.id; }, *result)) : std::nullopt;
}

/// Puts the text of the second block behind that of the first, and gives the seam.
TextPlace join(std::vector<Block>::iterator first, std::vector<Block>::iterator second, Note& note, Date now) {
    const TextPlace seam{first->id, first->text.size()};
    setText(*first, first->text + second->text);
    note.blocks.erase(second);
    note.modified = now;
    return seam;
}

bool isEmptyParagraph(const Block& block) {
    return block.kind == BlockKind::paragraph && block.text.empty();
}

} // namespace

std::optional<Uuid> split(const TextPlace& place, Note& note, Date now) {
    const auto block = findBlock(note, place.block);
    if (block == note.blocks.end()) {
        return std::nullopt;
    }
    const std::size_t offset = fitted(place, *block).offset;
    const bool isBlank = Unicode::trimBlanks(block->text).empty();
    if (!hasTextLine(block->kind) || isBlank || offset == block->text.size()) {
        return pressReturn(place.block, note, now);
    }
    note.modified = now;
    Block fresh;
    fresh.kind = NoteEditor::continued(block->kind);
    if (offset == 0) {
        note.blocks.insert(block, std::move(fresh));
        return place.block;
    }
    fresh.text = block->text.substr(offset);
    setText(*block, block->text.substr(0, offset));
    return note.blocks.insert(block + 1, std::move(fresh))->id;
}

std::optional<TextPlace> joinWithPrevious(Uuid id, Note& note, Date now) {
    const auto block = findBlock(note, id);
    if (block == note.blocks.end() || !hasTextLine(block->kind)) {
        return std::nullopt;
    }
    if (block->kind != BlockKind::paragraph) {
        NoteEditor::setKind(BlockKind::paragraph, id, note, now);
        return TextPlace{id, 0};
    }
    if (block == note.blocks.begin()) {
        return std::nullopt;
    }
    const auto previous = std::prev(block);
    if (previous->kind == BlockKind::divider || isEmptyParagraph(*previous)) {
        note.blocks.erase(previous);
        note.modified = now;
        return TextPlace{id, 0};
    }
    return hasTextLine(previous->kind) ? join(previous, block, note, now) : TextPlace{previous->id, 0};
}

std::optional<TextPlace> joinWithNext(Uuid id, Note& note, Date now) {
    const auto block = findBlock(note, id);
    if (block == note.blocks.end() || !hasTextLine(block->kind) || std::next(block) == note.blocks.end()) {
        return std::nullopt;
    }
    const auto next = std::next(block);
    if (next->kind == BlockKind::divider) {
        note.blocks.erase(next);
        note.modified = now;
        return TextPlace{id, block->text.size()};
    }
    if (isEmptyParagraph(*block)) {
        const Uuid following = next->id;
        note.blocks.erase(block);
        note.modified = now;
        return TextPlace{following, 0};
    }
    return hasTextLine(next->kind) ? join(block, next, note, now) : TextPlace{next->id, 0};
}

} // namespace varnic::BlockSelection
