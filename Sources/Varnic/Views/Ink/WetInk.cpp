#include "Varnic/Views/Ink/WetInk.h"

namespace varnic {

void WetInk::setText(QQuickTextDocument* text) {
    if (text_ != text) {
        text_ = text;
        setDocument(text != nullptr ? text->textDocument() : nullptr);
        Q_EMIT textChanged();
    }
}

void WetInk::setFirm(int characters) {
    if (firm_ != characters) {
        firm_ = characters;
        Q_EMIT inkChanged();
        rehighlight();
    }
}

void WetInk::setColor(const QColor& color) {
    if (color_ != color) {
        color_ = color;
        Q_EMIT inkChanged();
        rehighlight();
    }
}

void WetInk::highlightBlock(const QString& text) {
    const int begin = std::max(firm_ - currentBlock().position(), 0);
    if (begin < text.size()) {
        setFormat(begin, static_cast<int>(text.size()) - begin, color_);
    }
}

} // namespace varnic
