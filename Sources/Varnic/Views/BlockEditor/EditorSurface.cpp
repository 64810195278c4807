#include "Varnic/Views/BlockEditor/EditorSurface.h"

#include "Varnic/Views/BlockEditor/BlockField.h"
#include "Varnic/Views/BlockEditor/EditorClipboard.h"
#include "Varnic/Views/Context/ViewContext.h"
#include "VarnicCore/Editor/BlockSelection.h"

#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QQuickWindow>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace varnic {

namespace {

using namespace std::chrono_literals;

/// Pixels between the caret and the edge of what is seen.
constexpr qreal revealMargin = 12;

/// How far a point lies outside of a stretch.
qreal distance(qreal point, qreal from, qreal to) {
    return std::max({0.0, from - point, point - to});
}

} // namespace

EditorSurface::EditorSurface(QQuickItem* parent) : QQuickItem(parent) {
    // Else it would have the keyboard itself, which none of its texts then answers.
    setFlag(ItemIsFocusScope);
    setFiltersChildMouseEvents(true);
    setAcceptedMouseButtons(Qt::LeftButton);
    scroller_.setInterval(30ms);
    connect(&scroller_, &QTimer::timeout, this, [this] {
        scrollBy(pointer_.y() < 0 ? pointer_.y() : pointer_.y() - height());
        extendTo(pointer_);
    });
}

void EditorSurface::componentComplete() {
    QQuickItem::componentComplete();
    connect(blocks_, &QAbstractItemModel::rowsRemoved, this, &EditorSurface::keepFocus, Qt::QueuedConnection);
    focusRequests_ = ViewContext::of(this).model.focusBlock.addNotifier([this] { takeFocusRequest(); });
    // Once the list has been given its size.
    QMetaObject::invokeMethod(this, &EditorSurface::takeFocusRequest, Qt::QueuedConnection);
}

void EditorSurface::add(BlockField& field) {
    fields_.push_back(&field);
    selection_.show(field);
}

void EditorSurface::remove(BlockField& field) {
    std::erase(fields_, &field);
}

void EditorSurface::leave(const BlockField& field, bool forward) {
    QQuickItem* from = &field.editor();
    if (auto* const footer = list_->property("footerItem").value<QQuickItem*>(); forward && footer != nullptr) {
        from = footer;
    }
    from->nextItemInFocusChain(forward)->forceActiveFocus(forward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
}

void EditorSurface::noteFocus(BlockField& field, bool isFocused) {
    isInUse_ = isFocused;
    if (!isFocused) {
        // Once it is known who has it instead.
        QMetaObject::invokeMethod(this, &EditorSurface::keepFocus, Qt::QueuedConnection);
        return;
    }
    focused_ = field.key();
    focusedRow_ = blocks_->rowOf(focused_.block);
    const Block* const block = blocks_->block(focused_.block);
    focusedColumns_ = block != nullptr ? BlocksModel::columnsOf(*block) : 0;
    // A list keeps its current row when it is scrolled away, and with it the caret.
    list_->setProperty("currentIndex", focusedRow_);
    revealCaret();
}

/// When the row or the cell that had the focus goes, another has it.
void EditorSurface::keepFocus() {
    const bool isThere = blocks_->rowOf(focused_.block) >= 0;
    if (isThere ? !isForsaken() : !isInUse_) {
        return;
    }
    BlockField* next = isThere ? nearestToFocused() : nullptr;
    for (const bool forward : {true, false}) {
        if (const auto fields = fieldsBeyond(focusedRow_ - (forward ? 1 : 0), forward);
            next == nullptr && !fields.empty()) {
            next = forward ? fields.front() : fields.back();
        }
    }
    if (next != nullptr) {
        next->place(next->length());
    }
}

/// Whether the focus is here, but on nothing that answers a key.
bool EditorSurface::isForsaken() const {
    return hasActiveFocus() && window()->activeFocusItem()->isFocusScope();
}

/// The field that has the focus or had it last; where it is gone, another of its block, of a table the cell that is now
/// nearest to its place.
BlockField* EditorSurface::nearestToFocused() {
    const Block* const block = blocks_->block(focused_.block);
    FieldKey key = focused_;
    if (block != nullptr && block->kind == BlockKind::table && focusedColumns_ > 0) {
        const int columns = BlocksModel::columnsOf(*block);
        const int row = std::min(key.part / focusedColumns_, static_cast<int>(block->rows.size()) - 1);
        key.part = row * columns + std::min(key.part % focusedColumns_, columns - 1);
    }
    BlockField* const field = reach(key);
    return field != nullptr ? field : reach({.block = focused_.block});
}

void EditorSurface::takeFocusRequest() {
    if (!blocks_->hasApp()) {
        return;
    }
    AppModel& app = blocks_->app();
    const std::optional<Uuid> wanted = app.focusBlock.value();
    if (!wanted || blocks_->rowOf(*wanted) < 0) {
        return;
    }
    app.focusBlock = std::nullopt;
    if (BlockField* const field = reach({.block = *wanted}); field != nullptr && !field->isFocused()) {
        selection_.clear();
        field->place(field->length());
    }
}

BlockField* EditorSurface::find(const FieldKey& key) const {
    const auto found = std::ranges::find_if(
        fields_, [&](const BlockField* field) { return field->key() == key && field->isUsable(); });
    return found == fields_.end() ? nullptr : *found;
}

QQuickItem* EditorSurface::itemAt(int row) const {
    QQuickItem* item = nullptr;
    QMetaObject::invokeMethod(list_, "itemAtIndex", Q_RETURN_ARG(QQuickItem*, item), Q_ARG(int, row));
    return item;
}

BlockField* EditorSurface::reach(const FieldKey& key) {
    const int row = blocks_->rowOf(key.block);
    if (row < 0) {
        return nullptr;
    }
    QMetaObject::invokeMethod(list_, "forceLayout");
    if (itemAt(row) == nullptr && find(key) == nullptr) {
        constexpr int contain = 4; // ListView.Contain
        QMetaObject::invokeMethod(list_, "positionViewAtIndex", Q_ARG(int, row), Q_ARG(int, contain));
    }
    return find(key);
}

std::vector<BlockField*> EditorSurface::fieldsOf(int row) {
    if (row < 0 || row >= blocks_->rowCount()) {
        return {};
    }
    const Uuid block = blocks_->rows()[static_cast<std::size_t>(row)].id;
    reach({.block = block});
    std::vector<BlockField*> fields;
    std::ranges::copy_if(fields_, std::back_inserter(fields),
                         [&](const BlockField* field) { return field->key().block == block && field->isUsable(); });
    std::ranges::sort(fields, {}, [](const BlockField* field) { return field->key().part; });
    return fields;
}

std::vector<BlockField*> EditorSurface::fieldsBeyond(int row, bool forward) {
    const int step = forward ? 1 : -1;
    for (int next = row + step; next >= 0 && next < blocks_->rowCount(); next += step) {
        if (std::vector<BlockField*> fields = fieldsOf(next); !fields.empty()) {
            return fields;
        }
    }
    return {};
}

BlockField* EditorSurface::beside(const BlockField& field, bool forward) {
    const int row = blocks_->rowOf(field.key().block);
    const std::vector<BlockField*> own = fieldsOf(row);
    const auto at = std::ranges::find(own, &field);
    if (forward && at != own.end() && std::next(at) != own.end()) {
        return *std::next(at);
    }
    if (!forward && at != own.end() && at != own.begin()) {
        return *std::prev(at);
    }
    const std::vector<BlockField*> next = fieldsBeyond(row, forward);
    if (next.empty()) {
        return nullptr;
    }
    return forward ? next.front() : next.back();
}

BlockField* EditorSurface::beyond(const BlockField& field, bool down, qreal x) {
    // Of what lies beyond an edge, the nearest; of what lies side by side, what is at this x.
    const auto closest = [&](const std::vector<BlockField*>& candidates, qreal edge) -> BlockField* {
        BlockField* best = nullptr;
        std::pair<qreal, qreal> least;
        for (BlockField* const candidate : candidates) {
            const QRectF area = candidate->area();
            const qreal beyondEdge = down ? area.top() - edge : edge - area.bottom();
            if (beyondEdge < -1) {
                continue;
            }
            const std::pair measure(std::round(beyondEdge / 4), distance(x, area.left(), area.right()));
            if (best == nullptr || measure < least) {
                best = candidate;
                least = measure;
            }
        }
        return best;
    };
    const int row = blocks_->rowOf(field.key().block);
    const QRectF own = field.area();
    if (BlockField* const same = closest(fieldsOf(row), down ? own.bottom() : own.top())) {
        return same;
    }
    const std::vector<BlockField*> next = fieldsBeyond(row, down);
    return closest(next, down ? -1e9 : 1e9);
}

std::optional<TextPlace> EditorSurface::placeIn(const BlockField& field, const QString& text, int position) const {
    const Block* const block = blocks_->block(field.key().block);
    if (block == nullptr) {
        return std::nullopt;
    }
    if (!hasTextLine(block->kind)) {
        return TextPlace{.block = block->id};
    }
    return TextPlace{.block = block->id, .offset = static_cast<std::size_t>(text.left(position).toUtf8().size())};
}

void EditorSurface::type(BlockField& field, const QString& text) {
    // In the text as it is stored, which is still the one from before.
    const TextPlace before = EditorSelection::placeOf({field.key().block, caretBefore_}, *blocks_);
    const auto after = placeIn(field, text, field.caret());
    if (const std::optional<FieldKey> next = blocks_->type(field.key(), text.toStdString(), before, after)) {
        if (BlockField* const target = reach(*next)) {
            target->place(target->length());
        }
    }
}

void EditorSurface::go(const TextPlace& place) {
    const EditorSelection::End end = EditorSelection::endAt(place, *blocks_);
    // A place in a card or a table names no field: whoever types in one of its fields stays there, or near.
    const Block* const block = blocks_->block(end.block);
    if (block != nullptr && !hasTextLine(block->kind) && focused_.block == end.block) {
        if (BlockField* const field = nearestToFocused(); field != nullptr && !field->isFocused()) {
            field->place(field->length());
        }
        return;
    }
    if (BlockField* const field = reach({.block = end.block})) {
        field->place(end.position);
    }
}

void EditorSurface::removeSelection() {
    const TextSpan span = selection_.span();
    selection_.clear();
    const auto caret = blocks_->edit(EditKind::structure, span.to, [&span](Note& note, Date now) {
        return std::optional(BlockSelection::remove(span, note, now));
    });
    if (caret) {
        go(*caret);
    }
}

void EditorSurface::copySelection(QClipboard::Mode mode) const {
    EditorClipboard::copy(mode, blocks_->note(), selection_.span(), blocks_->app().exportOptions());
}

bool EditorSurface::paste(BlockField& field, QClipboard::Mode mode) {
    const Block* const block = blocks_->block(field.key().block);
    const bool isWide = selection_.isActive();
    if (block == nullptr || (!isWide && !hasTextLine(block->kind)) || !EditorClipboard::holdsBlocks(mode, isWide)) {
        return false;
    }
    const TextSpan span = isWide ? selection_.span()
                                 : TextSpan{.from = *placeIn(field, field.text(), field.selectionStart()),
                                            .to = *placeIn(field, field.text(), field.selectionEnd())};
    selection_.clear();
    const auto caret = blocks_->edit(EditKind::structure, span.to, [&](Note& note, Date now) {
        const TextPlace place = span.from == span.to ? span.from : BlockSelection::remove(span, note, now);
        return std::optional(EditorClipboard::paste(mode, place, note, now));
    });
    if (caret) {
        go(*caret);
    }
    return true;
}

void EditorSurface::undo() {
    selection_.clear();
    if (const std::optional<TextPlace> caret = blocks_->undo()) {
        go(*caret);
    }
}

void EditorSurface::redo() {
    selection_.clear();
    if (const std::optional<TextPlace> caret = blocks_->redo()) {
        go(*caret);
    }
}

bool EditorSurface::wantsKey(const BlockField& field, QKeyEvent& key) const {
    return keys_.claims(field, key);
}

bool EditorSurface::pressKey(BlockField& field, QKeyEvent& key) {
    caretBefore_ = field.caret();
    return keys_.press(field, key);
}

bool EditorSurface::prepareForInput(const BlockField& field, QInputMethodEvent& event) {
    caretBefore_ = field.caret();
    if (!selection_.isActive() || (event.commitString().isEmpty() && event.preeditString().isEmpty())) {
        return false;
    }
    removeSelection();
    if (const BlockField* const heir = find(focused_)) {
        QCoreApplication::sendEvent(&heir->editor(), &event);
    }
    return true;
}

void EditorSurface::scrollBy(qreal distance) {
    const qreal top = list_->property("originY").toReal();
    const qreal most = top + std::max(0.0, list_->property("contentHeight").toReal() - list_->height());
    list_->setProperty("contentY", std::clamp(list_->property("contentY").toReal() + distance, top, most));
}

void EditorSurface::revealCaret() {
    if (!isInUse_ || QGuiApplication::mouseButtons() != Qt::NoButton) {
        return; // what is under the pointer stays there
    }
    // A list that is scrolled before it has laid out that rows have gone shows none of those that are left.
    QMetaObject::invokeMethod(list_, "forceLayout");
    const bool isWide = selection_.isActive();
    const BlockField* const field = find(isWide ? FieldKey{.block = selection_.head().block} : focused_);
    if (field == nullptr) {
        return;
    }
    const QRectF caret = field->caretArea(isWide ? selection_.head().position : field->caret());
    if (caret.top() < revealMargin) {
        scrollBy(caret.top() - revealMargin);
    } else if (caret.bottom() > height() - revealMargin) {
        scrollBy(caret.bottom() - height() + revealMargin);
    }
}

void EditorSurface::scrollToBeginning() {
    QMetaObject::invokeMethod(list_, "positionViewAtBeginning");
}

QPointF EditorSurface::scrollPage(QPointF point, bool down) {
    constexpr qreal share = 0.9;
    const qreal wanted = (down ? share : -share) * height();
    const qreal before = list_->property("contentY").toReal();
    scrollBy(wanted);
    const qreal left = wanted - (list_->property("contentY").toReal() - before);
    QMetaObject::invokeMethod(list_, "forceLayout");
    return {point.x(), std::clamp(point.y() + left, revealMargin, height() - revealMargin)};
}

void EditorSurface::turnPage(bool down) {
    BlockField* const before = find(focused_);
    const QPointF at = scrollPage(
        before != nullptr ? before->caretArea(before->caret()).center() : QPointF(width() / 2, height() / 2), down);
    if (BlockField* const field = nearest(at)) {
        field->place(field->positionAt(at));
    }
}

std::optional<EditorSelection::End> EditorSurface::endNear(QPointF point) const {
    const BlockField* const field = nearest(point);
    if (field == nullptr) {
        return std::nullopt;
    }
    const Block* const block = blocks_->block(field->key().block);
    const bool isText = block != nullptr && hasTextLine(block->kind);
    return EditorSelection::End{.block = field->key().block, .position = isText ? field->positionAt(point) : 0};
}

void EditorSurface::enter() {
    if (const std::vector<BlockField*> first = fieldsBeyond(-1, true); !first.empty()) {
        first.front()->place(0);
    }
}

} // namespace varnic
