#include "VarnicCore/Editor/NoteEditor.h"

#include "VarnicCore/Editor/BlockAccess.h"
#include "VarnicCore/Editor/TypedForms.h"
#include "VarnicCore/Text/Unicode.h"

#include <algorithm>
#include <utility>

namespace varnic::NoteEditor {

namespace {

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
    fresh.kind = continued(block->kind);
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
    std::optional<Block> meant = asTyped(*block);
    if (!meant) {
        return false;
    }
    update(id, note, now, [&meant](Block& changed) { changed = std::move(*meant); });
    return true;
}

} // namespace varnic::NoteEditor
