#include "VarnicCore/Editor/TextPlace.h"

#include <unicode/utf8.h>

#include <algorithm>

namespace varnic {

bool hasTextLine(BlockKind kind) {
    return isTextual(kind) && kind != BlockKind::flashcard;
}

TextPlace fitted(TextPlace place, const Block& block) {
    const std::string& text = block.text;
    place.offset = hasTextLine(block.kind) ? std::min(place.offset, text.size()) : 0;
    while (place.offset > 0 && place.offset < text.size() && U8_IS_TRAIL(text[place.offset])) {
        --place.offset;
    }
    return place;
}

TextSpan ordered(const TextPlace& one, const TextPlace& other, const Note& note) {
    const auto first = std::ranges::find(note.blocks, one.block, &Block::id);
    const auto second = std::ranges::find(note.blocks, other.block, &Block::id);
    if (first == note.blocks.end() && second == note.blocks.end()) {
        return {one, other};
    }
    const TextPlace a = first == note.blocks.end() ? fitted(other, *second) : fitted(one, *first);
    const TextPlace b = second == note.blocks.end() ? a : fitted(other, *second);
    const bool isInOrder = a.block == b.block ? a.offset <= b.offset : first < second;
    return isInOrder ? TextSpan{a, b} : TextSpan{b, a};
}

TextSpan everything(const Note& note) {
    const Block& last = note.blocks.back();
    return {{note.blocks.front().id, 0}, fitted({last.id, last.text.size()}, last)};
}

} // namespace varnic
