#include "VarnicCore/Editor/TypedForms.h"

#include "VarnicCore/Text/Unicode.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>

namespace varnic::NoteEditor {

namespace {

struct Shortcut {
    std::string_view prefix;
    BlockKind kind;
    bool done;
};

/// Longer prefixes stand before those that they begin with.
constexpr std::array shortcuts{
    Shortcut{"### ", BlockKind::subheading, false}, Shortcut{"## ", BlockKind::subheading, false},
    Shortcut{"# ", BlockKind::heading, false},      Shortcut{"- [ ] ", BlockKind::todo, false},
    Shortcut{"- [x] ", BlockKind::todo, true},      Shortcut{"[ ] ", BlockKind::todo, false},
    Shortcut{"[] ", BlockKind::todo, false},        Shortcut{"[x] ", BlockKind::todo, true},
    Shortcut{"- ", BlockKind::bullet, false},       Shortcut{"* ", BlockKind::bullet, false},
    Shortcut{"• ", BlockKind::bullet, false},       Shortcut{"> ", BlockKind::quote, false},
};

const Shortcut* findShortcut(const Block& block) {
    const auto* const found = std::ranges::find_if(shortcuts, [&](const Shortcut& shortcut) {
        const bool fits =
            block.kind == BlockKind::paragraph || (block.kind == BlockKind::bullet && shortcut.kind == BlockKind::todo);
        return fits && block.text.starts_with(shortcut.prefix);
    });
    return found == shortcuts.end() ? nullptr : found;
}

struct CardSides {
    std::string front;
    std::string back;
};

std::optional<CardSides> cardSides(std::string_view text) {
    const auto separator = text.find(cardSeparator);
    if (separator == std::string_view::npos) {
        return std::nullopt;
    }
    const auto front = Unicode::trimBlanks(text.substr(0, separator));
    const auto back = Unicode::trimBlanks(text.substr(separator + cardSeparator.size()));
    if (front.empty() || back.empty()) {
        return std::nullopt;
    }
    return CardSides{std::string(front), std::string(back)};
}

} // namespace

std::optional<Block> asTyped(const Block& block) {
    if (const Shortcut* shortcut = findShortcut(block)) {
        Block meant = block;
        meant.kind = shortcut->kind;
        meant.done = shortcut->done;
        meant.text.erase(0, shortcut->prefix.size());
        return meant;
    }
    if (block.kind != BlockKind::paragraph) {
        return std::nullopt;
    }
    if (Unicode::trimBlanks(block.text) == "---") {
        Block meant = block;
        meant.kind = BlockKind::divider;
        meant.text.clear();
        return meant;
    }
    auto sides = cardSides(block.text);
    if (!sides) {
        return std::nullopt;
    }
    Block meant = block;
    meant.kind = BlockKind::flashcard;
    meant.text = std::move(sides->front);
    meant.back = std::move(sides->back);
    meant.card = CardState{};
    return meant;
}

} // namespace varnic::NoteEditor
