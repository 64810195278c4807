#include "Varnic/Views/NotePage/TextSync.h"

#include <QScopedValueRollback>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>

namespace varnic {

namespace {

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

} // namespace

void TextSync::setDocument(QQuickTextDocument* document) {
    document_ = document;
    connect(document_->textDocument(), &QTextDocument::contentsChanged, this, &TextSync::takeTyped);
    show();
    Q_EMIT documentChanged();
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
    QTextDocument* const text = document_->textDocument();
    const QString before = text->toPlainText();
    if (before == value_) {
        return;
    }
    const QScopedValueRollback showing(isShowing_, true);
    const Common common = commonEnds(before, value_);
    QTextCursor cursor(text);
    cursor.setPosition(static_cast<int>(common.head));
    cursor.setPosition(static_cast<int>(before.size() - common.tail), QTextCursor::KeepAnchor);
    cursor.insertText(value_.mid(common.head, value_.size() - common.head - common.tail));
    // Taking back one's own typing would take back what others wrote too.
    text->clearUndoRedoStacks();
}

void TextSync::takeTyped() {
    if (isShowing_) {
        return;
    }
    if (const QString typed = document_->textDocument()->toPlainText(); typed != value_) {
        value_ = typed;
        Q_EMIT edited(typed);
        Q_EMIT valueChanged();
    }
}

} // namespace varnic
