#include "VarnicCore/Models/Block.h"

#include <algorithm>
#include <utility>

namespace varnic {

namespace {

struct KindNames {
    std::string_view rawValue;
    std::string_view title;
    std::string_view symbol;
};

constexpr std::array<KindNames, allBlockKinds.size()> kindNames{{
    {"paragraph", "Text", "text.alignleft"},
    {"heading", "Heading", "textformat.size.larger"},
    {"subheading", "Subheading", "textformat.size"},
    {"todo", "To-do", "checkmark.square"},
    {"bullet", "Bulleted list", "list.bullet"},
    {"quote", "Quote", "text.quote"},
    {"table", "Table", "tablecells"},
    {"flashcard", "Flashcard", "rectangle.on.rectangle.angled"},
    {"divider", "Divider", "minus"},
}};

const KindNames& names(BlockKind kind) {
    return kindNames.at(static_cast<std::size_t>(kind));
}

} // namespace

std::string_view rawValue(BlockKind kind) {
    return names(kind).rawValue;
}

std::optional<BlockKind> blockKindFrom(std::string_view rawValue) {
    const auto* const found = std::ranges::find(kindNames, rawValue, &KindNames::rawValue);
    if (found == kindNames.end()) {
        return std::nullopt;
    }
    return allBlockKinds.at(static_cast<std::size_t>(found - kindNames.begin()));
}

std::string_view title(BlockKind kind) {
    return names(kind).title;
}

std::string_view symbol(BlockKind kind) {
    return names(kind).symbol;
}

bool isTextual(BlockKind kind) {
    return kind != BlockKind::table && kind != BlockKind::divider;
}

Block Block::flashcard(std::string front, std::string back) {
    Block block;
    block.kind = BlockKind::flashcard;
    block.text = std::move(front);
    block.back = std::move(back);
    block.card = CardState{};
    return block;
}

Block Block::table(std::vector<std::vector<std::string>> rows) {
    Block block;
    block.kind = BlockKind::table;
    block.rows = std::move(rows);
    return block;
}

} // namespace varnic
