// What the mouse does on the surface: selecting over several blocks, and moving them.

#include "Varnic/Views/BlockEditor/EditorSurface.h"

#include "Varnic/Views/BlockEditor/BlockField.h"

#include <QGuiApplication>
#include <QMouseEvent>

#include <algorithm>
#include <limits>

namespace varnic {

BlockField* EditorSurface::nearest(QPointF point) const {
    BlockField* best = nullptr;
    std::pair least(std::numeric_limits<qreal>::max(), 0.0);
    for (BlockField* const field : fields_) {
        if (!field->isUsable()) {
            continue;
        }
        const QRectF area = field->area();
        const std::pair measure(std::max({0.0, area.top() - point.y(), point.y() - area.bottom()}),
                                std::max({0.0, area.left() - point.x(), point.x() - area.right()}));
        if (measure < least) {
            best = field;
            least = measure;
        }
    }
    return best;
}

bool EditorSurface::childMouseEventFilter(QQuickItem* item, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        return pressMouse(item, static_cast<QMouseEvent&>(*event));
    case QEvent::MouseMove:
        return dragMouse(static_cast<QMouseEvent&>(*event));
    case QEvent::MouseButtonRelease:
        pressed_.reset();
        return false;
    default:
        return false;
    }
}

bool EditorSurface::pressMouse(QQuickItem* item, QMouseEvent& event) {
    const QPointF at = mapFromScene(event.scenePosition());
    const auto own = std::ranges::find(fields_, item, [](const BlockField* field) { return &field->editor(); });
    // What scrolls lies under the fields: the list, and a wide table in it.
    if (own == fields_.end() && !item->inherits("QQuickFlickable")) {
        return false;
    }
    BlockField* const field = own != fields_.end() ? *own : nearest(at);
    if (field == nullptr) {
        return true;
    }
    if (event.button() == Qt::MiddleButton && own != fields_.end()) {
        selection_.clear();
        field->place(field->positionAt(at));
        return paste(*field, QClipboard::Selection);
    }
    if (event.button() != Qt::LeftButton) {
        return false;
    }
    const QQuickItem* const first = itemAt(0); // null where it is scrolled away
    if (own == fields_.end() && first != nullptr && at.y() < first->mapToItem(this, QPointF()).y()) {
        return true; // above the blocks: nothing to select, and no content to drag with a mouse
    }
    const EditorSelection::End end{.block = field->key().block, .position = field->positionAt(at)};
    if ((event.modifiers() & Qt::ShiftModifier) != 0 && isInUse_ && focused_.block != end.block) {
        const BlockField* const from = find(focused_);
        const EditorSelection::End anchor =
            selection_.isActive()
                ? selection_.anchor()
                : EditorSelection::End{.block = focused_.block, .position = from != nullptr ? from->caret() : 0};
        selection_.set(anchor, end);
        return true;
    }
    selection_.clear();
    pressed_ = end;
    if (own != fields_.end()) {
        return false;
    }
    field->place(end.position);
    grabMouse();
    setKeepMouseGrab(true);
    return true;
}

bool EditorSurface::dragMouse(QMouseEvent& event) {
    if (!pressed_ || (event.buttons() & Qt::LeftButton) == 0) {
        return false;
    }
    const QPointF at = mapFromScene(event.scenePosition());
    const BlockField* const over = nearest(at);
    if (over == nullptr || over->key().block == pressed_->block) {
        return false;
    }
    grabMouse();
    setKeepMouseGrab(true);
    extendTo(at);
    return true;
}

void EditorSurface::extendTo(QPointF point) {
    if (const auto over = endNear(point); pressed_ && over) {
        selection_.set(*pressed_, *over);
    }
}

void EditorSurface::mouseMoveEvent(QMouseEvent* event) {
    pointer_ = event->position();
    const bool isOutside = pointer_.y() < 0 || pointer_.y() > height();
    if (isOutside && !scroller_.isActive()) {
        scroller_.start();
    } else if (!isOutside) {
        scroller_.stop();
    }
    extendTo(pointer_);
}

void EditorSurface::mouseReleaseEvent(QMouseEvent* /*event*/) {
    // What is selected with the mouse can be put in with its middle button, where the system does so.
    if (selection_.isActive() && QGuiApplication::clipboard()->supportsSelection()) {
        copySelection(QClipboard::Selection);
    }
    mouseUngrabEvent();
}

void EditorSurface::mouseUngrabEvent() {
    scroller_.stop();
    pressed_.reset();
    setKeepMouseGrab(false);
}

void EditorSurface::dragTo(qreal y) {
    const int rows = blocks_->rowCount();
    for (int row = 0; row < rows; ++row) {
        QQuickItem* const item = itemAt(row);
        if (item == nullptr) {
            continue;
        }
        const QRectF area = item->mapRectToItem(this, item->boundingRect());
        dropRow_ = row;
        dropLine_ = area.top();
        if (y < area.center().y()) {
            break;
        }
        dropRow_ = row + 1;
        dropLine_ = area.bottom();
    }
    Q_EMIT dropLineChanged();
}

void EditorSurface::drop(int row) {
    if (dropLine_ >= 0 && row >= 0 && row < blocks_->rowCount()) {
        blocks_->moveBy(row, (dropRow_ > row ? dropRow_ - 1 : dropRow_) - row);
    }
    dropLine_ = -1;
    Q_EMIT dropLineChanged();
}

} // namespace varnic
