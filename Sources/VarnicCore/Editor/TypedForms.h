#pragma once

#include "VarnicCore/Models/Block.h"

#include <optional>
#include <string_view>

namespace varnic::NoteEditor {

/// What separates the two sides of a flashcard as typed.
inline constexpr std::string_view cardSeparator = " :: ";

/// The block that a paragraph or bullet means by the form of its text ("# ", "- [ ] ", "front :: back", "---"); nothing
/// where it means itself.
std::optional<Block> asTyped(const Block& block);

} // namespace varnic::NoteEditor
