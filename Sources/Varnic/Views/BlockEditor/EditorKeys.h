#pragma once

#include "Varnic/Views/BlockEditor/EditorSelection.h"

#include <QTextCursor>

#include <optional>

class QKeyEvent;

namespace varnic {

class BlockField;
class EditorSurface;

/// What keys do beyond the field that has the focus. Main thread.
class EditorKeys {
public:
    explicit EditorKeys(EditorSurface& surface) : surface_(surface) {}

    /// Settles whose the key is before shortcuts are asked: true when it is settled.
    [[nodiscard]] bool claims(const BlockField& field, QKeyEvent& key) const;
    /// Whether the key has been dealt with; else the field does with it what it does.
    bool press(BlockField& field, QKeyEvent& key);

private:
    bool pressCommand(BlockField& field, const QKeyEvent& key);
    bool pressReturn(BlockField& field, Qt::KeyboardModifiers modifiers);
    bool pressTab(BlockField& field, bool forward);
    bool pressBackspace(BlockField& field);
    bool pressDelete(BlockField& field);
    bool removeBlock(BlockField& field);
    bool moveBlock(BlockField& field, bool down);
    bool selectAll(BlockField& field);
    bool replaceSelection(QKeyEvent& key);
    bool move(BlockField& field, QTextCursor::MoveOperation operation);
    bool extend(BlockField& field, QTextCursor::MoveOperation operation);
    bool extendByPage(BlockField& field, bool down);
    [[nodiscard]] EditorSelection::End stepped(const EditorSelection::End& head, QTextCursor::MoveOperation operation);
    [[nodiscard]] static EditorSelection::End anchorIn(const BlockField& field);
    [[nodiscard]] EditorSelection::End edge(bool end) const;
    void leaveSelection(EditorSelection::End caret);

    EditorSurface& surface_;
    /// Where moving up and down goes on, in the surface's pixels.
    std::optional<qreal> goal_;
};

} // namespace varnic
