#pragma once

#include "VarnicCore/Models/Note.h"

#include <cstddef>

namespace varnic {

/// A place of the caret in a note.
struct TextPlace {
    Uuid block;
    /// Bytes of UTF-8 in the block's `text`; 0 in a block without a line of text. One that is beyond the text or inside
    /// a code point stands for the nearest place before it.
    std::size_t offset = 0;

    bool operator==(const TextPlace&) const = default;
};

/// What is selected: from one place up to another, in the order of the note.
struct TextSpan {
    TextPlace from;
    TextPlace to;

    bool operator==(const TextSpan&) const = default;
};

/// Whether the block's only content is one line of text, in which a caret can stand: no card, table or divider. A span
/// that reaches into another block takes the whole of it.
bool hasTextLine(BlockKind kind);

/// The place with an offset that is one of the block's text.
TextPlace fitted(TextPlace place, const Block& block);

/// The two places in the order of the note, with offsets that fit their blocks. A place in an unknown block counts as
/// the other one.
TextSpan ordered(const TextPlace& one, const TextPlace& other, const Note& note);

/// From the note's beginning to its end.
TextSpan everything(const Note& note);

} // namespace varnic
