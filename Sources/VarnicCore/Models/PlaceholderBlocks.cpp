#include "VarnicCore/Models/PlaceholderBlocks.h"

#include <string>

namespace varnic {

std::vector<Block> placeholderBlocks() {
    return {Block{.kind = BlockKind::heading, .text = std::string(notesHeading)}, Block{}};
}

bool isBlank(const Block& block) {
    return block.kind == BlockKind::paragraph && block.text.empty() && block.back.empty();
}

bool isPlaceholder(const Block& block) {
    return isBlank(block) || (block.kind == BlockKind::heading && block.text == notesHeading);
}

} // namespace varnic
