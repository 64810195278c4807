#include "Varnic/Views/BlockEditor/EditorSelection.h"

#include "Varnic/Views/BlockEditor/BlockField.h"
#include "Varnic/Views/BlockEditor/EditorSurface.h"

#include <vector>

namespace varnic {

TextPlace EditorSelection::placeOf(const End& end, const BlocksModel& blocks) {
    const Block* const block = blocks.block(end.block);
    if (block == nullptr || !hasTextLine(block->kind)) {
        return {.block = end.block};
    }
    const QString text = QString::fromStdString(block->text);
    return {.block = end.block, .offset = static_cast<std::size_t>(text.left(end.position).toUtf8().size())};
}

EditorSelection::End EditorSelection::endAt(const TextPlace& place, const BlocksModel& blocks) {
    const Block* const block = blocks.block(place.block);
    if (block == nullptr || !hasTextLine(block->kind)) {
        return {.block = place.block};
    }
    const TextPlace fit = fitted(place, *block);
    return {.block = place.block,
            .position =
                static_cast<int>(QString::fromUtf8(block->text.data(), static_cast<qsizetype>(fit.offset)).size())};
}

void EditorSelection::set(const End& anchor, const End& head) {
    const Block* const block = surface_.blocks().block(anchor.block);
    if (anchor.block == head.block && block != nullptr && hasTextLine(block->kind)) {
        clear();
        if (BlockField* const field = surface_.reach({.block = head.block})) {
            field->place(head.position);
            field->select(anchor.position, head.position);
        }
        return;
    }
    anchor_ = anchor;
    head_ = head;
    const BlocksModel& blocks = surface_.blocks();
    const End& first = blocks.rowOf(anchor.block) <= blocks.rowOf(head.block) ? anchor : head;
    if (BlockField* const field = surface_.reach({.block = first.block})) {
        field->place(first.position);
    }
    surface_.reach({.block = head.block});
    // A copy: what is shown may scroll, which makes more fields.
    for (BlockField* const field : std::vector(surface_.fields())) {
        show(*field);
    }
    surface_.revealCaret();
}

void EditorSelection::selectAll() {
    const TextSpan all = everything(surface_.blocks().note());
    set(endAt(all.from, surface_.blocks()), endAt(all.to, surface_.blocks()));
}

void EditorSelection::clear() {
    if (!anchor_) {
        return;
    }
    anchor_.reset();
    for (BlockField* const field : surface_.fields()) {
        field->deselect();
        field->setCovered(false);
    }
}

TextSpan EditorSelection::span() const {
    return {.from = placeOf(*anchor_, surface_.blocks()), .to = placeOf(head_, surface_.blocks())};
}

void EditorSelection::show(BlockField& field) const {
    if (!anchor_) {
        return;
    }
    const BlocksModel& blocks = surface_.blocks();
    const int row = blocks.rowOf(field.key().block);
    const int anchorRow = blocks.rowOf(anchor_->block);
    const int headRow = blocks.rowOf(head_.block);
    const bool isDown = anchorRow <= headRow;
    const auto& [first, last] = isDown ? std::pair(*anchor_, head_) : std::pair(head_, *anchor_);
    if (row < std::min(anchorRow, headRow) || row > std::max(anchorRow, headRow)) {
        field.deselect();
        field.setCovered(false);
        return;
    }
    const Block* const block = blocks.block(field.key().block);
    if (block == nullptr || !hasTextLine(block->kind)) {
        field.select(0, field.length());
        field.setCovered(true);
        return;
    }
    const int from = first.block == block->id ? first.position : 0;
    const int to = last.block == block->id ? last.position : field.length();
    field.select(to, from);
}

} // namespace varnic
