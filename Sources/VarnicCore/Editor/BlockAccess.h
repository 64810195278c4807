#pragma once

#include "VarnicCore/Models/Note.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace varnic::NoteEditor {

/// The block with the id, or the end of the note's blocks.
inline std::vector<Block>::iterator findBlock(Note& note, Uuid id) {
    return std::ranges::find(note.blocks, id, &Block::id);
}

inline bool isListItem(BlockKind kind) {
    return kind == BlockKind::todo || kind == BlockKind::bullet;
}

/// The kind of the block that Return makes behind one of this kind: lists go on.
inline BlockKind continued(BlockKind kind) {
    return isListItem(kind) ? kind : BlockKind::paragraph;
}

/// Gives the block this text. A block from a digest whose text changes becomes the user's own.
inline void setText(Block& block, std::string text) {
    if (block.text != text) {
        block.text = std::move(text);
        block.fromDigest = false;
    }
}

} // namespace varnic::NoteEditor
