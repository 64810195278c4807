#include "Varnic/Views/BlockEditor/BlockField.h"

#include <QKeyEvent>
#include <QQuickTextDocument>
#include <QTextDocument>

#include <algorithm>

namespace varnic {

BlockField::~BlockField() {
    if (surface_) {
        surface_->remove(*this);
    }
}

void BlockField::componentComplete() {
    editor_->installEventFilter(this);
    connect(editor_, &QQuickItem::activeFocusChanged, this,
            [this](bool isActive) { surface_->noteFocus(*this, isActive); });
    if (auto* const document = editor_->property("textDocument").value<QQuickTextDocument*>()) {
        document_ = document->textDocument();
        // The note has a history of its own, over all of its fields.
        document_->setUndoRedoEnabled(false);
        sync_.setEditor(editor_);
        connect(&sync_, &TextSync::edited, this, [this](const QString& typed) { surface_->type(*this, typed); });
        // Of an item made in QML, only signals by their names can be connected to. Not to cursorRectangleChanged, which
        // also comes with scrolling.
        connect(editor_, SIGNAL(cursorPositionChanged()), surface_, SLOT(revealCaret()));
        connect(editor_, SIGNAL(preeditTextChanged()), surface_, SLOT(revealCaret()));
    }
    surface_->add(*this);
}

void BlockField::setBlockId(const QString& id) {
    block_ = Uuid::parse(id.toStdString()).value_or(Uuid());
    Q_EMIT blockIdChanged();
}

void BlockField::setPart(int part) {
    if (part < 0) {
        return; // of a cell that is being taken away, whose place counts a moment longer
    }
    part_ = part;
    Q_EMIT blockIdChanged();
    if (editor_ && surface_ && isFocused()) {
        surface_->noteFocus(*this, true);
    }
}

void BlockField::setText(const QString& text) {
    sync_.setValue(text);
    Q_EMIT textChanged();
}

bool BlockField::isUsable() const {
    // A row that the list has let go of stays visible until it is deleted, but in no window.
    return editor_ && editor_->window() != nullptr && editor_->isVisible() && editor_->isEnabled();
}

int BlockField::length() const {
    return isText() ? document_->characterCount() - 1 : 0;
}

int BlockField::caret() const {
    return isText() ? editor_->property("cursorPosition").toInt() : 0;
}

int BlockField::selectionStart() const {
    return isText() ? editor_->property("selectionStart").toInt() : 0;
}

int BlockField::selectionEnd() const {
    return isText() ? editor_->property("selectionEnd").toInt() : 0;
}

bool BlockField::isComposing() const {
    return isText() && editor_->property("inputMethodComposing").toBool();
}

void BlockField::place(int position) {
    editor_->forceActiveFocus(Qt::OtherFocusReason);
    if (isText()) {
        editor_->setProperty("cursorPosition", std::clamp(position, 0, length()));
    }
    surface_->revealCaret(); // also where the caret has been there while the list was scrolled
}

void BlockField::select(int from, int to) {
    if (isText()) {
        QMetaObject::invokeMethod(editor_, "select", Q_ARG(int, std::clamp(from, 0, length())),
                                  Q_ARG(int, std::clamp(to, 0, length())));
    }
}

void BlockField::deselect() {
    if (isText()) {
        QMetaObject::invokeMethod(editor_, "deselect");
    }
}

void BlockField::setCovered(bool covered) {
    if (std::exchange(isCovered_, covered) != covered) {
        Q_EMIT isCoveredChanged();
    }
}

std::optional<int> BlockField::moved(int position, QTextCursor::MoveOperation operation) const {
    if (!isText()) {
        return std::nullopt;
    }
    QTextCursor cursor(document_);
    cursor.setPosition(std::clamp(position, 0, length()));
    if (!cursor.movePosition(operation) || cursor.position() == position) {
        return std::nullopt;
    }
    return cursor.position();
}

QRectF BlockField::caretInEditor(int position) const {
    QRectF area;
    QMetaObject::invokeMethod(editor_, "positionToRectangle", Q_RETURN_ARG(QRectF, area),
                              Q_ARG(int, std::clamp(position, 0, length())));
    return area;
}

bool BlockField::isOnFirstLine(int position) const {
    return !isText() || caretInEditor(position).y() <= caretInEditor(0).y();
}

bool BlockField::isOnLastLine(int position) const {
    return !isText() || caretInEditor(position).y() >= caretInEditor(length()).y();
}

QRectF BlockField::area() const {
    return editor_->mapRectToItem(surface_, editor_->boundingRect());
}

QRectF BlockField::caretArea(int position) const {
    return isText() ? editor_->mapRectToItem(surface_, caretInEditor(position)) : area();
}

int BlockField::positionAt(QPointF point) const {
    if (!isText()) {
        return 0;
    }
    const QPointF inside = editor_->mapFromItem(surface_, point);
    if (inside.y() < 0) {
        return 0;
    }
    if (inside.y() > editor_->height()) {
        return length();
    }
    int position = 0;
    QMetaObject::invokeMethod(editor_, "positionAt", Q_RETURN_ARG(int, position), Q_ARG(qreal, inside.x()),
                              Q_ARG(qreal, inside.y()));
    return position;
}

int BlockField::positionOnEdge(qreal x, bool onLastLine) const {
    return isText() ? positionAt({x, caretArea(onLastLine ? length() : 0).center().y()}) : 0;
}

bool BlockField::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        return surface_->wantsKey(*this, *static_cast<QKeyEvent*>(event));
    case QEvent::KeyPress:
        return surface_->pressKey(*this, *static_cast<QKeyEvent*>(event));
    case QEvent::InputMethod:
        return surface_->prepareForInput(*this, *static_cast<QInputMethodEvent*>(event));
    default:
        return QObject::eventFilter(watched, event);
    }
}

} // namespace varnic
