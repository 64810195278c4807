#include "Varnic/Views/BlockEditor/EditorKeys.h"

#include "Varnic/Views/BlockEditor/BlockField.h"
#include "Varnic/Views/BlockEditor/EditorSurface.h"
#include "VarnicCore/Editor/BlockSelection.h"
#include "VarnicCore/Editor/NoteEditor.h"

#include <QKeyEvent>
#include <QQuickWindow>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <utility>
#include <variant>

namespace varnic {

namespace {

using Operation = QTextCursor::MoveOperation;

struct Motion {
    QKeySequence::StandardKey move;
    QKeySequence::StandardKey select;
    Operation operation;
};

constexpr std::array motions{
    Motion{QKeySequence::MoveToPreviousLine, QKeySequence::SelectPreviousLine, QTextCursor::Up},
    Motion{QKeySequence::MoveToNextLine, QKeySequence::SelectNextLine, QTextCursor::Down},
    Motion{QKeySequence::MoveToPreviousChar, QKeySequence::SelectPreviousChar, QTextCursor::Left},
    Motion{QKeySequence::MoveToNextChar, QKeySequence::SelectNextChar, QTextCursor::Right},
    Motion{QKeySequence::MoveToPreviousWord, QKeySequence::SelectPreviousWord, QTextCursor::WordLeft},
    Motion{QKeySequence::MoveToNextWord, QKeySequence::SelectNextWord, QTextCursor::WordRight},
    Motion{QKeySequence::MoveToStartOfLine, QKeySequence::SelectStartOfLine, QTextCursor::StartOfLine},
    Motion{QKeySequence::MoveToEndOfLine, QKeySequence::SelectEndOfLine, QTextCursor::EndOfLine},
    Motion{QKeySequence::MoveToStartOfDocument, QKeySequence::SelectStartOfDocument, QTextCursor::Start},
    Motion{QKeySequence::MoveToEndOfDocument, QKeySequence::SelectEndOfDocument, QTextCursor::End},
};

bool isReturn(const QKeyEvent& key) {
    return key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
}

bool isAlone(const QKeyEvent& key, int code, Qt::KeyboardModifiers modifiers) {
    return key.key() == code && (key.modifiers() & ~Qt::KeypadModifier) == modifiers;
}

bool isMoveOfBlock(const QKeyEvent& key) {
    return isAlone(key, Qt::Key_Up, Qt::AltModifier) || isAlone(key, Qt::Key_Down, Qt::AltModifier);
}

bool isModifier(const QKeyEvent& key) {
    return key.key() == Qt::Key_Shift || key.key() == Qt::Key_Control || key.key() == Qt::Key_Alt ||
           key.key() == Qt::Key_Meta;
}

/// It writes something.
bool isTyped(const QKeyEvent& key) {
    return !key.text().isEmpty() && key.text().front().isPrint() &&
           (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) == Qt::NoModifier;
}

/// Whether the operation goes on in the order of the text.
bool isForward(Operation operation, bool rightToLeft) {
    switch (operation) {
    case QTextCursor::Right:
    case QTextCursor::WordRight:
        return !rightToLeft;
    case QTextCursor::Left:
    case QTextCursor::WordLeft:
        return rightToLeft;
    default:
        return operation == QTextCursor::Down || operation == QTextCursor::End;
    }
}

bool isVertical(Operation operation) {
    return operation == QTextCursor::Up || operation == QTextCursor::Down;
}

bool isWithinLine(Operation operation) {
    return operation == QTextCursor::StartOfLine || operation == QTextCursor::EndOfLine;
}

BlockKind kindOf(const BlockField& field, const EditorSurface& surface) {
    const Block* const block = surface.blocks().block(field.key().block);
    return block != nullptr ? block->kind : BlockKind::paragraph;
}

/// Whether the field's block is a table whose last row is empty.
bool endsEmpty(const BlockField& field, const EditorSurface& surface) {
    const Block* const block = surface.blocks().block(field.key().block);
    return block != nullptr && !block->rows.empty() && std::ranges::all_of(block->rows.back(), &std::string::empty);
}

} // namespace

bool EditorKeys::claims(const BlockField& field, QKeyEvent& key) const {
    if (field.isComposing()) {
        return false;
    }
    if (key.matches(QKeySequence::Undo)) {
        if (const auto& toast = surface_.blocks().app().toast.value(); toast && toast->undo) {
            key.ignore(); // what was done last is what the toast takes back
            return true;
        }
    }
    if (isMoveOfBlock(key) || (isReturn(key) && key.modifiers() == Qt::ControlModifier)) {
        key.accept();
        return true;
    }
    return false;
}

bool EditorKeys::press(BlockField& field, QKeyEvent& key) {
    if (field.isComposing()) {
        return isReturn(key); // a field would break the line beside what is being composed
    }
    if (isModifier(key)) {
        return false;
    }
    for (const Motion& motion : motions) {
        if (key.matches(motion.move)) {
            return move(field, motion.operation);
        }
        if (key.matches(motion.select)) {
            return extend(field, motion.operation);
        }
    }
    goal_.reset();
    return pressCommand(field, key) || replaceSelection(key);
}

bool EditorKeys::pressCommand(BlockField& field, const QKeyEvent& key) {
    EditorSelection& selection = surface_.selection();
    if (key.matches(QKeySequence::Undo)) {
        surface_.undo();
        return true;
    }
    if (key.matches(QKeySequence::Redo) || isAlone(key, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier)) {
        surface_.redo();
        return true;
    }
    if (selection.isActive() && (key.matches(QKeySequence::Copy) || key.matches(QKeySequence::Cut))) {
        surface_.copySelection(QClipboard::Clipboard);
        if (key.matches(QKeySequence::Cut)) {
            surface_.removeSelection();
        }
        return true;
    }
    if (key.matches(QKeySequence::Paste)) {
        return surface_.paste(field, QClipboard::Clipboard);
    }
    if (key.matches(QKeySequence::SelectAll)) {
        return selectAll(field);
    }
    if (isMoveOfBlock(key)) {
        return moveBlock(field, key.key() == Qt::Key_Down);
    }
    if (isReturn(key)) {
        return pressReturn(field, key.modifiers() & ~Qt::KeypadModifier);
    }
    if (key.matches(QKeySequence::MoveToNextPage) || key.matches(QKeySequence::MoveToPreviousPage)) {
        selection.clear();
        surface_.turnPage(key.matches(QKeySequence::MoveToNextPage));
        return true;
    }
    if (key.matches(QKeySequence::SelectNextPage) || key.matches(QKeySequence::SelectPreviousPage)) {
        return extendByPage(field, key.matches(QKeySequence::SelectNextPage));
    }
    switch (key.key()) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return (key.modifiers() & Qt::ControlModifier) == 0 && pressTab(field, key.key() == Qt::Key_Tab);
    case Qt::Key_Backspace:
        return pressBackspace(field);
    case Qt::Key_Delete:
        return pressDelete(field);
    case Qt::Key_Escape:
        if (selection.isActive()) {
            leaveSelection(selection.head());
            return true;
        }
        return false;
    default:
        return false;
    }
}

/// What is typed takes the place of what is selected.
bool EditorKeys::replaceSelection(QKeyEvent& key) {
    if (!surface_.selection().isActive() || !isTyped(key)) {
        return false;
    }
    surface_.removeSelection();
    if (QQuickItem* const focused = surface_.window()->activeFocusItem()) {
        QCoreApplication::sendEvent(focused, &key);
    }
    return true;
}

bool EditorKeys::pressReturn(BlockField& field, Qt::KeyboardModifiers modifiers) {
    const int row = surface_.blocks().rowOf(field.key().block);
    const BlockKind kind = kindOf(field, surface_);
    if (modifiers == Qt::ControlModifier && kind == BlockKind::todo) {
        surface_.blocks().toggle(row);
        return true;
    }
    if (modifiers == Qt::ShiftModifier && field.isText()) {
        return false; // a line break
    }
    if (surface_.selection().isActive()) {
        surface_.removeSelection();
        return true;
    }
    if (kind == BlockKind::table || (kind == BlockKind::flashcard && field.key().part == 0)) {
        const qreal x = field.area().center().x();
        BlockField* const next =
            kind == BlockKind::table ? surface_.beyond(field, true, x) : surface_.beside(field, true);
        if (next != nullptr && next->key().block == field.key().block) {
            next->place(next->length());
            return true;
        }
    }
    const TextPlace before = EditorSelection::placeOf({field.key().block, field.caret()}, surface_.blocks());
    const TextPlace end = EditorSelection::placeOf({field.key().block, field.selectionEnd()}, surface_.blocks());
    const TextPlace start = EditorSelection::placeOf({field.key().block, field.selectionStart()}, surface_.blocks());
    const auto caret =
        surface_.blocks().edit(EditKind::structure, before, [&](Note& note, Date now) -> std::optional<TextPlace> {
            TextPlace place = start;
            if (hasTextLine(kind)) {
                if (!(start == end)) {
                    place = BlockSelection::remove({.from = start, .to = end}, note, now);
                }
                const std::optional<Uuid> next = BlockSelection::split(place, note, now);
                return next ? std::optional(TextPlace{.block = *next}) : std::nullopt;
            }
            const auto result = NoteEditor::pressReturn(field.key().block, note, now);
            return result ? std::optional(
                                TextPlace{.block = std::visit([](const auto& what) { return what.id; }, *result)})
                          : std::nullopt;
        });
    if (caret) {
        surface_.go(*caret);
    }
    return true;
}

bool EditorKeys::pressTab(BlockField& field, bool forward) {
    surface_.selection().clear();
    BlockField* const next = surface_.beside(field, forward);
    const bool isInBlock = next != nullptr && next->key().block == field.key().block;
    // An empty row is left, so that the key leads out of the table too.
    if (!isInBlock && forward && kindOf(field, surface_) == BlockKind::table && !endsEmpty(field, surface_)) {
        const int row = surface_.blocks().rowOf(field.key().block);
        surface_.blocks().addRow(row);
        if (BlockField* const added = surface_.reach({field.key().block, field.key().part + 1})) {
            added->place(0);
        }
        return true;
    }
    if (next == nullptr) {
        surface_.leave(field, forward);
        return true;
    }
    next->place(next->length());
    return true;
}

/// Backspace where the block has nothing left to delete.
bool EditorKeys::removeBlock(BlockField& field) {
    const auto caret = surface_.blocks().edit(
        EditKind::structure, TextPlace{.block = field.key().block},
        [&](Note& note, Date now) -> std::optional<TextPlace> {
            const std::optional<Uuid> next = NoteEditor::pressDeleteWhenEmpty(field.key().block, note, now);
            if (!next) {
                return std::nullopt;
            }
            const auto block = std::ranges::find(note.blocks, *next, &Block::id);
            return TextPlace{.block = *next, .offset = block != note.blocks.end() ? block->text.size() : 0};
        });
    if (caret) {
        surface_.go(*caret);
    }
    return true;
}

bool EditorKeys::pressBackspace(BlockField& field) {
    if (surface_.selection().isActive()) {
        surface_.removeSelection();
        return true;
    }
    const Block* const block = surface_.blocks().block(field.key().block);
    if (block == nullptr || field.hasSelection() || field.caret() > 0) {
        return false;
    }
    const bool isEmpty = block->text.empty() && block->back.empty();
    if (block->kind == BlockKind::divider || (isTextual(block->kind) && isEmpty)) {
        return removeBlock(field);
    }
    if (!hasTextLine(block->kind)) {
        return false;
    }
    const auto caret = surface_.blocks().edit(
        EditKind::structure, TextPlace{.block = block->id},
        [id = block->id](Note& note, Date now) { return BlockSelection::joinWithPrevious(id, note, now); });
    if (caret) {
        surface_.go(*caret);
    }
    return true;
}

bool EditorKeys::pressDelete(BlockField& field) {
    if (surface_.selection().isActive()) {
        surface_.removeSelection();
        return true;
    }
    const Block* const block = surface_.blocks().block(field.key().block);
    if (block == nullptr || field.hasSelection() || field.caret() < field.length()) {
        return false;
    }
    if (block->kind == BlockKind::divider) {
        return removeBlock(field);
    }
    if (!hasTextLine(block->kind)) {
        return false;
    }
    const auto caret = surface_.blocks().edit(
        EditKind::structure, EditorSelection::placeOf({block->id, field.caret()}, surface_.blocks()),
        [id = block->id](Note& note, Date now) { return BlockSelection::joinWithNext(id, note, now); });
    if (caret) {
        surface_.go(*caret);
    }
    return true;
}

bool EditorKeys::moveBlock(BlockField& field, bool down) {
    EditorSelection& selection = surface_.selection();
    const TextPlace caret = EditorSelection::placeOf({field.key().block, field.caret()}, surface_.blocks());
    const TextSpan span = selection.isActive() ? selection.span() : TextSpan{.from = caret, .to = caret};
    surface_.blocks().edit(EditKind::structure, caret, [&](Note& note, Date now) -> std::optional<TextPlace> {
        BlockSelection::move(span, down ? 1 : -1, note, now);
        return caret;
    });
    surface_.revealCaret();
    return true;
}

/// The text first, then all of the note.
bool EditorKeys::selectAll(BlockField& field) {
    const bool isWhole = field.selectionStart() == 0 && field.selectionEnd() == field.length();
    if (!isWhole && !surface_.selection().isActive()) {
        return false;
    }
    surface_.selection().selectAll();
    return true;
}

/// Where what is selected in a text begins, at the other end of which the caret is.
EditorSelection::End EditorKeys::anchorIn(const BlockField& field) {
    const bool isForward = field.caret() == field.selectionEnd();
    return {.block = field.key().block, .position = isForward ? field.selectionStart() : field.selectionEnd()};
}

EditorSelection::End EditorKeys::edge(bool end) const {
    const TextSpan all = everything(surface_.blocks().note());
    return EditorSelection::endAt(end ? all.to : all.from, surface_.blocks());
}

/// The caret goes there, and nothing is selected.
void EditorKeys::leaveSelection(EditorSelection::End caret) {
    surface_.selection().clear();
    surface_.go(EditorSelection::placeOf(caret, surface_.blocks()));
}

bool EditorKeys::move(BlockField& field, Operation operation) {
    EditorSelection& selection = surface_.selection();
    const bool isRightToLeft = field.isRightToLeft();
    const bool forward = isForward(operation, isRightToLeft);
    if (!isVertical(operation)) {
        goal_.reset();
    }
    if (operation == QTextCursor::Start || operation == QTextCursor::End) {
        if (!forward) {
            surface_.scrollToBeginning();
        }
        leaveSelection(edge(forward));
        return true;
    }
    if (selection.isActive()) {
        const TextSpan span = ordered(selection.span().from, selection.span().to, surface_.blocks().note());
        leaveSelection(isWithinLine(operation)
                           ? stepped(selection.head(), operation)
                           : EditorSelection::endAt(forward ? span.to : span.from, surface_.blocks()));
        return true;
    }
    if (isVertical(operation)) {
        if (forward ? !field.isOnLastLine(field.caret()) : !field.isOnFirstLine(field.caret())) {
            return false;
        }
        const qreal x = goal_.value_or(field.caretArea(field.caret()).left());
        if (BlockField* const next = surface_.beyond(field, forward, x)) {
            next->place(next->positionOnEdge(x, !forward));
            goal_ = x;
            return true;
        }
        if (!forward) {
            Q_EMIT surface_.leftAtTop();
            return true;
        }
        return false;
    }
    if (isWithinLine(operation) || field.hasSelection() || field.moved(field.caret(), operation)) {
        return false;
    }
    if (BlockField* const next = surface_.beside(field, forward)) {
        next->place(forward ? 0 : next->length());
    }
    return true;
}

EditorSelection::End EditorKeys::stepped(const EditorSelection::End& head, Operation operation) {
    if (operation == QTextCursor::Start || operation == QTextCursor::End) {
        return edge(operation == QTextCursor::End);
    }
    const BlocksModel& blocks = surface_.blocks();
    BlockField* const field = surface_.reach({.block = head.block});
    const bool isText = field != nullptr && hasTextLine(kindOf(*field, surface_));
    if (isVertical(operation) && field != nullptr && !goal_) {
        goal_ = field->caretArea(head.position).left();
    }
    if (isText) {
        if (const std::optional<int> moved = field->moved(head.position, operation)) {
            return {.block = head.block, .position = *moved};
        }
        if (isWithinLine(operation)) {
            return head;
        }
    }
    const bool forward = isForward(operation, isText && field->isRightToLeft());
    const int row = blocks.rowOf(head.block) + (forward ? 1 : -1);
    const std::vector<BlockField*> next = surface_.fieldsOf(row);
    if (next.empty()) {
        // Past either end, or a block without fields, which can only be gone over.
        return row < 0 || row >= blocks.rowCount()
                   ? edge(forward)
                   : EditorSelection::End{.block = blocks.rows()[static_cast<std::size_t>(row)].id};
    }
    const BlockField& target = *next.front();
    if (!hasTextLine(kindOf(target, surface_))) {
        return {.block = target.key().block};
    }
    if (isVertical(operation) && goal_) {
        return {.block = target.key().block, .position = target.positionOnEdge(*goal_, !forward)};
    }
    return {.block = target.key().block, .position = forward ? 0 : target.length()};
}

bool EditorKeys::extend(BlockField& field, Operation operation) {
    EditorSelection& selection = surface_.selection();
    if (!isVertical(operation)) {
        goal_.reset();
    }
    if (selection.isActive()) {
        selection.set(EditorSelection::End(selection.anchor()), stepped(selection.head(), operation));
        return true;
    }
    const bool isText = hasTextLine(kindOf(field, surface_));
    if (isText && field.moved(field.caret(), operation) && operation != QTextCursor::Start &&
        operation != QTextCursor::End) {
        return false; // within the text
    }
    if (!isText && field.isText()) {
        return false; // a cell or a side of a card stays within itself
    }
    selection.set(anchorIn(field), stepped({.block = field.key().block, .position = field.caret()}, operation));
    return true;
}

bool EditorKeys::extendByPage(BlockField& field, bool down) {
    EditorSelection& selection = surface_.selection();
    const bool isActive = selection.isActive();
    if (!isActive && field.isText() && !hasTextLine(kindOf(field, surface_))) {
        return false; // a cell or a side of a card stays within itself
    }
    const EditorSelection::End anchor = isActive ? selection.anchor() : anchorIn(field);
    const EditorSelection::End head =
        isActive ? selection.head() : EditorSelection::End{.block = field.key().block, .position = field.caret()};
    if (const BlockField* const from = surface_.reach({.block = head.block})) {
        const QPointF to = surface_.scrollPage(from->caretArea(head.position).center(), down);
        selection.set(anchor, surface_.endNear(to).value_or(head));
    }
    return true;
}

} // namespace varnic
