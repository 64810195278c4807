#include "VarnicCore/Editor/NoteEditor.h"

#include "VarnicCore/Editor/BlockAccess.h"
#include "VarnicCore/Text/Unicode.h"

#include <algorithm>
#include <array>
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

/// What separates the two sides of a flashcard as typed.
constexpr std::string_view cardSeparator = " :: ";

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

bool isListItem(BlockKind kind) {
    return kind == BlockKind::todo || kind == BlockKind::bullet;
}

/// The words that a block keeps when its kind changes.
std::string wordsOf(const Block& block) {
    if (block.kind != BlockKind::table) {
        return block.text;
    }
    std::string words;
    bool first = true;
    for (const auto& row : block.rows) {
        for (const std::string& cell : row) {
            words += first ? cell : ' ' + cell;
            first = false;
        }
    }
    return words;
}

void become(Block& block, BlockKind kind) {
    std::string words = wordsOf(block);
    block.kind = kind;
    if (kind == BlockKind::table) {
        block.text.clear();
        block.rows = {{std::move(words), ""}, {"", ""}};
        return;
    }
    block.text = kind == BlockKind::divider ? std::string() : std::move(words);
    if (kind == BlockKind::flashcard && !block.card) {
        block.card = CardState{};
    }
}

} // namespace

void insert(Block block, std::optional<Uuid> after, Note& note, Date now) {
    const auto place = after ? findBlock(note, *after) : note.blocks.end();
    note.blocks.insert(place == note.blocks.end() ? place : place + 1, std::move(block));
    note.modified = now;
}

std::optional<Uuid> remove(Uuid id, Note& note, Date now) {
    const auto place = findBlock(note, id);
    if (place == note.blocks.end()) {
        return std::nullopt;
    }
    const auto index = static_cast<std::size_t>(place - note.blocks.begin());
    note.blocks.erase(place);
    note.keepOneBlock();
    note.modified = now;
    return note.blocks[std::max<std::size_t>(index, 1) - 1].id;
}

void move(Uuid id, int offset, Note& note, Date now) {
    const auto place = findBlock(note, id);
    if (place == note.blocks.end()) {
        return;
    }
    const auto last = static_cast<std::ptrdiff_t>(note.blocks.size()) - 1;
    const std::ptrdiff_t target =
        std::clamp(place - note.blocks.begin() + static_cast<std::ptrdiff_t>(offset), std::ptrdiff_t{0}, last);
    const auto destination = note.blocks.begin() + target;
    if (destination == place) {
        return;
    }
    if (destination > place) {
        std::rotate(place, place + 1, destination + 1);
    } else {
        std::rotate(destination, place, place + 1);
    }
    note.modified = now;
}

void update(Uuid id, Note& note, Date now, const std::function<void(Block&)>& change) {
    const auto block = findBlock(note, id);
    if (block == note.blocks.end()) {
        return;
    }
    const std::string before = block->text;
    change(*block);
    if (block->text != before) {
        block->fromDigest = false;
    }
    note.modified = now;
}

void setKind(BlockKind kind, Uuid id, Note& note, Date now) {
    const auto block = findBlock(note, id);
    if (block != note.blocks.end() && block->kind != kind) {
        update(id, note, now, [kind](Block& changed) { become(changed, kind); });
    }
}

std::optional<ReturnResult> pressReturn(Uuid id, Note& note, Date now) {
    const auto block = findBlock(note, id);
    if (block == note.blocks.end()) {
        return std::nullopt;
    }
    if (isListItem(block->kind) && Unicode::trimBlanks(block->text).empty()) {
        setKind(BlockKind::paragraph, id, note, now);
        return LeftList{id};
    }
    Block fresh;
    fresh.kind = isListItem(block->kind) ? block->kind : BlockKind::paragraph;
    const Uuid freshId = fresh.id;
    insert(std::move(fresh), id, note, now);
    return NewBlock{freshId};
}

std::optional<Uuid> pressDeleteWhenEmpty(Uuid id, Note& note, Date now) {
    const auto block = findBlock(note, id);
    if (block == note.blocks.end()) {
        return std::nullopt;
    }
    if (isTextual(block->kind) && block->kind != BlockKind::paragraph) {
        setKind(BlockKind::paragraph, id, note, now);
        return id;
    }
    if (note.blocks.size() == 1) {
        return std::nullopt;
    }
    return remove(id, note, now);
}

bool applyShortcut(Uuid id, Note& note, Date now) {
    const auto block = findBlock(note, id);
    if (block == note.blocks.end()) {
        return false;
    }
    if (const Shortcut* shortcut = findShortcut(*block)) {
        update(id, note, now, [shortcut](Block& changed) {
            changed.kind = shortcut->kind;
            changed.done = shortcut->done;
            changed.text.erase(0, shortcut->prefix.size());
        });
        return true;
    }
    if (block->kind != BlockKind::paragraph) {
        return false;
    }
    if (Unicode::trimBlanks(block->text) == "---") {
        setKind(BlockKind::divider, id, note, now);
        return true;
    }
    auto sides = cardSides(block->text);
    if (!sides) {
        return false;
    }
    update(id, note, now, [&sides](Block& changed) {
        changed.kind = BlockKind::flashcard;
        changed.text = std::move(sides->front);
        changed.back = std::move(sides->back);
        changed.card = CardState{};
    });
    return true;
}

} // namespace varnic::NoteEditor
