#pragma once

#include "Varnic/Views/BlockEditor/EditorSurface.h"
#include "Varnic/Views/Note/TextSync.h"

#include <QPointF>
#include <QPointer>
#include <QQmlParserStatus>
#include <QQuickItem>
#include <QRectF>
#include <QTextCursor>
#include <QtQmlIntegration>

#include <optional>

namespace varnic {

/// Ties a text editor of a block to the note and to the surface that all of the note's editors share: what is typed
/// goes into the note, and keys that go beyond the editor to the surface. Positions are in UTF-16 units of the text.
/// Main thread.
class BlockField : public QObject, public QQmlParserStatus {
    Q_OBJECT
    QML_ELEMENT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(varnic::EditorSurface* surface MEMBER surface_ REQUIRED)
    /// A TextEdit, or for a block without text what takes the focus.
    Q_PROPERTY(QQuickItem* editor MEMBER editor_ REQUIRED)
    Q_PROPERTY(QString blockId READ blockId WRITE setBlockId NOTIFY blockIdChanged REQUIRED)
    /// Another one where cells have come or gone before it.
    Q_PROPERTY(int part READ part WRITE setPart NOTIFY blockIdChanged)
    /// The stored text.
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    /// The block is one of several that are selected.
    Q_PROPERTY(bool isCovered READ isCovered NOTIFY isCoveredChanged)

public:
    using QObject::QObject;
    ~BlockField() override;
    BlockField(const BlockField&) = delete;
    BlockField& operator=(const BlockField&) = delete;

    void classBegin() override {}

    void componentComplete() override;

    [[nodiscard]] QString blockId() const { return QString::fromStdString(key().block.text()); }

    void setBlockId(const QString& id);

    [[nodiscard]] int part() const { return part_; }

    void setPart(int part);

    [[nodiscard]] FieldKey key() const { return {.block = block_, .part = part_}; }

    [[nodiscard]] QString text() const { return sync_.value(); }

    void setText(const QString& text);

    [[nodiscard]] bool isCovered() const { return isCovered_; }

    [[nodiscard]] QQuickItem& editor() const { return *editor_; }

    /// Whether it shows and can be typed in or walked onto.
    [[nodiscard]] bool isUsable() const;

    /// Whether it holds text; a divider does not.
    [[nodiscard]] bool isText() const { return document_ != nullptr; }

    [[nodiscard]] bool isFocused() const { return editor_->hasActiveFocus(); }

    [[nodiscard]] int length() const;
    [[nodiscard]] int caret() const;
    [[nodiscard]] int selectionStart() const;
    [[nodiscard]] int selectionEnd() const;

    [[nodiscard]] bool hasSelection() const { return selectionStart() != selectionEnd(); }

    [[nodiscard]] bool isComposing() const;

    [[nodiscard]] bool isRightToLeft() const { return text().isRightToLeft(); }

    /// Takes the focus, without a selection.
    void place(int position);
    /// With the caret at `to`.
    void select(int from, int to);
    /// Nothing is selected; the caret stays.
    void deselect();
    /// Shows that the whole is selected, or not.
    void setCovered(bool covered);

    /// Where moving the caret of a selection leads, as by a key; nothing where it would leave the text.
    [[nodiscard]] std::optional<int> moved(int position, QTextCursor::MoveOperation operation) const;

    /// The caret stands on the first line that is seen, or the last.
    [[nodiscard]] bool isOnFirstLine(int position) const;
    [[nodiscard]] bool isOnLastLine(int position) const;

    // Geometry, in the surface's pixels.

    [[nodiscard]] QRectF area() const;
    [[nodiscard]] QRectF caretArea(int position) const;
    [[nodiscard]] int positionAt(QPointF point) const;
    /// The position nearest to this x on the first line, or the last.
    [[nodiscard]] int positionOnEdge(qreal x, bool onLastLine) const;

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void blockIdChanged();
    void textChanged();
    void isCoveredChanged();

private:
    [[nodiscard]] QRectF caretInEditor(int position) const;

    QPointer<EditorSurface> surface_;
    QPointer<QQuickItem> editor_;
    QPointer<QTextDocument> document_;
    TextSync sync_;
    Uuid block_;
    int part_ = 0;
    bool isCovered_ = false;
};

} // namespace varnic
