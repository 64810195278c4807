#include "Varnic/Views/Note/TextSync.h"

#include "Varnic/Views/Theme/Native/OneLine.h"

#include <QQuickTextDocument>
#include <QScopedValueRollback>
#include <QTextCursor>

#include <algorithm>

namespace varnic {

namespace {

constexpr const char* cursorPosition = "cursorPosition";

/// What two texts have in common at their ends, in UTF-16 units; no surrogate pair is cut.
struct Common {
    qsizetype head = 0;
    qsizetype tail = 0;
};

Common commonEnds(const QString& a, const QString& b) {
    const qsizetype shorter = std::min(a.size(), b.size());
    Common common;
    while (common.head < shorter && a[common.head] == b[common.head]) {
        ++common.head;
    }
    if (common.head > 0 && a[common.head - 1].isHighSurrogate()) {
        --common.head;
    }
    while (common.tail < shorter - common.head && a[a.size() - 1 - common.tail] == b[b.size() - 1 - common.tail]) {
        ++common.tail;
    }
    if (common.tail > 0 && a[a.size() - common.tail].isLowSurrogate()) {
        --common.tail;
    }
    return common;
}

/// As it is stored: `toPlainText` makes plain blanks of those that break no line.
QString textOf(const QTextDocument& document) {
    QString text = document.toRawText();
    std::ranges::replace_if(
        text, [](QChar each) { return each == QChar::ParagraphSeparator || each == QChar::LineSeparator; },
        QChar(u'\n'));
    return text;
}

} // namespace

void TextSync::setEditor(QQuickItem* editor) {
    editor_ = editor;
    document_ = editor_->property("textDocument").value<QQuickTextDocument*>()->textDocument();
    connect(document_, &QTextDocument::contentsChanged, this, &TextSync::takeTyped);
    show();
    Q_EMIT editorChanged();
}

void TextSync::setValue(const QString& value) {
    if (value != value_) {
        value_ = value;
        show();
        Q_EMIT valueChanged();
    }
}

void TextSync::show() {
    if (!document_) {
        return;
    }
    const QString before = textOf(*document_);
    if (before == value_) {
        return;
    }
    const QScopedValueRollback showing(isShowing_, true);
    const Common common = commonEnds(before, value_);
    const auto from = static_cast<int>(common.head);
    const auto to = static_cast<int>(before.size() - common.tail);
    const bool isAtCursor = editor_->property(cursorPosition).toInt() == from && from == to;
    QTextCursor cursor(document_);
    cursor.setPosition(from);
    cursor.setPosition(to, QTextCursor::KeepAnchor);
    cursor.insertText(value_.mid(common.head, value_.size() - common.head - common.tail));
    if (isAtCursor) {
        editor_->setProperty(cursorPosition, from); // the document moves cursors behind what is put in at their place
    }
    // Taking back one's own typing would take back what others wrote too.
    document_->clearUndoRedoStacks();
}

void TextSync::takeTyped() {
    if (isShowing_) {
        return;
    }
    const QString typed = textOf(*document_);
    if (typed == value_) {
        return;
    }
    const QString taken = lineBreaks_ ? typed : oneLine(typed);
    if (taken != value_) {
        value_ = taken;
        Q_EMIT edited(taken);
        Q_EMIT valueChanged();
    }
    if (taken != typed) {
        show();
    }
}

} // namespace varnic
