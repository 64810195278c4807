#pragma once

#include "VarnicCore/Models/Block.h"

#include <string_view>
#include <vector>

namespace varnic {

/// The heading under which the user's own words stand in a call's note.
inline constexpr std::string_view notesHeading = "Notes";

/// What a call's note holds until it is transcribed: the heading of the notes with an empty paragraph.
std::vector<Block> placeholderBlocks();

/// Whether the block is an empty paragraph.
bool isBlank(const Block& block);

/// Whether the block is like one of `placeholderBlocks`.
bool isPlaceholder(const Block& block);

} // namespace varnic
