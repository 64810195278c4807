#pragma once

#include "VarnicCore/Models/Note.h"

#include <optional>

/// Bringing together what two programs made of one note. Pure.
namespace varnic::NoteMerge {

/// Whether nothing that a reader sees would be lost if the one note stood in place of the other: it says the same, and
/// perhaps more. A transcribed call also holds its own version from before that, placeholders included.
bool holds(const Note& note, const Note& less);

/// The note with what both did to it since it was `base`; nothing where both changed the same thing in different ways.
/// What one removed and the other changed stays. Where it matters, ours goes first.
std::optional<Note> merged(const Note& base, const Note& ours, const Note& theirs);

} // namespace varnic::NoteMerge
