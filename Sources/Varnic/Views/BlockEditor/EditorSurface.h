#pragma once

#include "Varnic/Views/BlockEditor/BlocksModel.h"
#include "Varnic/Views/BlockEditor/EditorKeys.h"
#include "Varnic/Views/BlockEditor/EditorSelection.h"

#include <QClipboard>
#include <QPointer>
#include <QQuickItem>
#include <QTimer>
#include <QtQmlIntegration>

#include <optional>
#include <vector>

class QInputMethodEvent;
class QKeyEvent;

namespace varnic {

class BlockField;

/// The ground under a list of blocks, on which they are one continuous text: it moves the focus between their fields,
/// selects over several of them, and keeps the caret in view. Coordinates are its own pixels. Main thread.
class EditorSurface : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// A ListView of the blocks that fills this item.
    Q_PROPERTY(QQuickItem* list MEMBER list_ REQUIRED)
    Q_PROPERTY(varnic::BlocksModel* blocks MEMBER blocks_ REQUIRED)
    /// Where a block that is dragged would go, or -1.
    Q_PROPERTY(qreal dropLine READ dropLine NOTIFY dropLineChanged)

public:
    explicit EditorSurface(QQuickItem* parent = nullptr);

    void componentComplete() override;

    // What fields tell.

    void add(BlockField& field);
    void remove(BlockField& field);
    void noteFocus(BlockField& field, bool isFocused);
    void type(BlockField& field, const QString& text);
    /// The key is the field's, or the window's: nobody else is to be asked.
    bool wantsKey(const BlockField& field, QKeyEvent& key) const;
    /// Whether the key has been dealt with.
    bool pressKey(BlockField& field, QKeyEvent& key);
    /// Whether the event has been passed on to the field that takes the place of what was selected.
    bool prepareForInput(const BlockField& field, QInputMethodEvent& event);

    // What the keys and the selection need.

    [[nodiscard]] BlocksModel& blocks() const { return *blocks_; }

    [[nodiscard]] EditorSelection& selection() { return selection_; }

    [[nodiscard]] const std::vector<BlockField*>& fields() const { return fields_; }

    /// The field, made and in view (but for the one that has the focus, which is there wherever it has been scrolled
    /// to); null where there is none.
    BlockField* reach(const FieldKey& key);
    /// The fields of a row that can be used, in their order.
    std::vector<BlockField*> fieldsOf(int row);
    /// Those of the next row after (or before) this one that has any, which a table without rows does not.
    std::vector<BlockField*> fieldsBeyond(int row, bool forward);
    /// The next field in reading order, or the one before; null at the ends of the note.
    BlockField* beside(const BlockField& field, bool forward);
    /// The field below at this x, or the one above; null at the ends of the note.
    BlockField* beyond(const BlockField& field, bool down, qreal x);
    /// The keyboard goes on to what comes after the note's fields, or before them.
    void leave(const BlockField& field, bool forward);
    /// The caret goes there.
    void go(const TextPlace& place);
    /// Removes what is selected over several blocks; the caret goes where it was.
    void removeSelection();
    void copySelection(QClipboard::Mode mode) const;
    /// Whether it was pasted; a line is left to the field.
    bool paste(BlockField& field, QClipboard::Mode mode);
    void undo();
    void redo();
    /// To what stands above the blocks; the caret stays.
    void scrollToBeginning();
    /// By a screen. Gives where a point comes to that goes along: where it was, or on towards the end of the note where
    /// less was left to scroll.
    QPointF scrollPage(QPointF point, bool down);
    /// By a screen, with the caret.
    void turnPage(bool down);
    /// The place in the text that is nearest to a point; nothing in a note without fields.
    [[nodiscard]] std::optional<EditorSelection::End> endNear(QPointF point) const;

    [[nodiscard]] qreal dropLine() const { return dropLine_; }

    /// A block is dragged to this y.
    Q_INVOKABLE void dragTo(qreal y);
    /// It is dropped there.
    Q_INVOKABLE void drop(int row);
    /// The caret goes to the note's first field.
    Q_INVOKABLE void enter();

public Q_SLOTS:
    void revealCaret();

Q_SIGNALS:
    void dropLineChanged();
    /// The caret is moved up from the first line.
    void leftAtTop();

protected:
    bool childMouseEventFilter(QQuickItem* item, QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;

private:
    [[nodiscard]] QQuickItem* itemAt(int row) const;
    [[nodiscard]] BlockField* find(const FieldKey& key) const;
    [[nodiscard]] BlockField* nearest(QPointF point) const;
    [[nodiscard]] BlockField* nearestToFocused();
    [[nodiscard]] bool isForsaken() const;
    [[nodiscard]] std::optional<TextPlace> placeIn(const BlockField& field, const QString& text, int position) const;
    void takeFocusRequest();
    void keepFocus();
    void scrollBy(qreal distance);
    bool pressMouse(QQuickItem* item, QMouseEvent& event);
    bool dragMouse(QMouseEvent& event);
    void extendTo(QPointF point);

    QPointer<QQuickItem> list_;
    QPointer<BlocksModel> blocks_;
    EditorSelection selection_{*this};
    EditorKeys keys_{*this};
    std::vector<BlockField*> fields_;
    /// The field that has the focus, or had it last.
    FieldKey focused_;
    int focusedRow_ = 0;
    /// Of the table that it is in.
    int focusedColumns_ = 0;
    /// Where the caret was before what is being typed.
    int caretBefore_ = 0;
    /// Somebody typed here and has not gone elsewhere since.
    bool isInUse_ = false;
    std::optional<QPropertyNotifier> focusRequests_;
    /// Where the mouse was pressed.
    std::optional<EditorSelection::End> pressed_;
    QPointF pointer_;
    QTimer scroller_;
    qreal dropLine_ = -1;
    int dropRow_ = 0;
};

} // namespace varnic
