#pragma once

#include "VarnicCore/Models/Note.h"

#include <algorithm>
#include <vector>

namespace varnic::NoteEditor {

/// The block with the id, or the end of the note's blocks.
inline std::vector<Block>::iterator findBlock(Note& note, Uuid id) {
    return std::ranges::find(note.blocks, id, &Block::id);
}

} // namespace varnic::NoteEditor
