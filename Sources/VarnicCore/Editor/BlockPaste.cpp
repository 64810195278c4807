#include "VarnicCore/Editor/BlockAccess.h"
#include "VarnicCore/Editor/BlockSelection.h"
#include "VarnicCore/Editor/PastedText.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

namespace varnic::BlockSelection {

namespace {

using NoteEditor::setText;
using Blocks = std::vector<Block>;

TextPlace endOf(const Block& block) {
    return fitted({block.id, block.text.size()}, block);
}

Block paragraph(std::string text) {
    Block block;
    block.text = std::move(text);
    return block;
}

/// Whether the pasted block's text goes on with a text of that kind.
bool joins(const Block& pasted, BlockKind kind) {
    return hasTextLine(pasted.kind) && (pasted.kind == BlockKind::paragraph || pasted.kind == kind);
}

/// Lets an empty block be the pasted one, but a paragraph's words take the empty block's form.
void fill(Block& empty, Block pasted) {
    if (pasted.kind == BlockKind::paragraph) {
        setText(empty, std::move(pasted.text));
        return;
    }
    pasted.id = empty.id;
    empty = std::move(pasted);
}

/// Plain lines go on with a list.
void continueList(Blocks& pasted, BlockKind kind) {
    const auto isParagraph = [](const Block& block) { return block.kind == BlockKind::paragraph; };
    if (NoteEditor::isListItem(kind) && std::ranges::all_of(pasted, isParagraph)) {
        for (Block& block : pasted) {
            block.kind = kind;
        }
    }
}

Blocks::iterator insert(Blocks pasted, Blocks::iterator place, Note& note) {
    return note.blocks.insert(place, std::move_iterator(pasted.begin()), std::move_iterator(pasted.end()));
}

/// Puts the blocks into the text of the block with the index.
TextPlace pasteInto(std::size_t index, std::size_t offset, Blocks pasted, Note& note) {
    Block& target = note.blocks[index];
    const BlockKind kind = target.kind;
    if (offset == 0 && !target.text.empty() && !joins(pasted.front(), kind)) {
        const TextPlace caret = endOf(pasted.back());
        insert(std::move(pasted), note.blocks.begin() + static_cast<std::ptrdiff_t>(index), note);
        return caret;
    }
    const std::string tail = target.text.substr(offset);
    const bool isEmpty = target.text.empty();
    if (isEmpty || joins(pasted.front(), kind)) {
        Block first = std::move(pasted.front());
        pasted.erase(pasted.begin());
        isEmpty ? fill(target, std::move(first)) : setText(target, target.text.substr(0, offset) + first.text);
    } else {
        setText(target, target.text.substr(0, offset));
    }
    const bool isOneText = pasted.empty();
    const std::size_t lastIndex = index + pasted.size();
    insert(std::move(pasted), note.blocks.begin() + static_cast<std::ptrdiff_t>(index) + 1, note);
    Block& last = note.blocks[lastIndex];
    const TextPlace caret = endOf(last);
    if (isOneText || joins(last, kind)) {
        setText(last, last.text + tail);
    } else if (!tail.empty()) {
        Block rest = paragraph(tail);
        rest.kind = NoteEditor::continued(kind);
        note.blocks.insert(note.blocks.begin() + static_cast<std::ptrdiff_t>(lastIndex) + 1, std::move(rest));
    }
    return caret;
}

/// Puts fresh blocks in at a place in the target.
TextPlace put(Blocks pasted, TextPlace place, Blocks::iterator target, Note& note, Date now) {
    place = fitted(place, *target);
    if (pasted.empty()) {
        return place;
    }
    note.modified = now;
    if (hasTextLine(target->kind)) {
        continueList(pasted, target->kind);
        return pasteInto(static_cast<std::size_t>(target - note.blocks.begin()), place.offset, std::move(pasted), note);
    }
    const TextPlace caret = endOf(pasted.back());
    insert(std::move(pasted), std::next(target), note);
    return caret;
}

/// What a line means where nothing stands yet; a line of text means what it says, to the letter.
Blocks oneLine(const std::string& line, bool isMarkdown) {
    Blocks blocks = isMarkdown ? PastedText::fromMarkdown(line) : PastedText::fromPlainText(line);
    const bool isText = blocks.size() != 1 || blocks.front().kind == BlockKind::paragraph;
    return isText ? Blocks{paragraph(line)} : std::move(blocks);
}

} // namespace

TextPlace paste(std::string_view text, bool isMarkdown, const TextPlace& place, Note& note, Date now) {
    const auto target = NoteEditor::findBlock(note, place.block);
    if (target == note.blocks.end()) {
        return place;
    }
    const std::string clean = PastedText::cleaned(text);
    Blocks pasted;
    if (clean.find('\n') != std::string::npos) {
        pasted = isMarkdown ? PastedText::fromMarkdown(clean) : PastedText::fromPlainText(clean);
    } else if (hasTextLine(target->kind) && target->text.empty()) {
        pasted = oneLine(clean, isMarkdown);
    } else {
        pasted.push_back(paragraph(clean));
    }
    return clean.empty() ? fitted(place, *target) : put(std::move(pasted), place, target, note, now);
}

TextPlace paste(std::vector<Block> blocks, const TextPlace& place, Note& note, Date now) {
    const auto target = NoteEditor::findBlock(note, place.block);
    if (target == note.blocks.end()) {
        return place;
    }
    for (Block& block : blocks) {
        block.id = Uuid::random();
        block.fromDigest = false;
    }
    return put(std::move(blocks), place, target, note, now);
}

} // namespace varnic::BlockSelection
