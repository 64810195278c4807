#include "Varnic/Views/NotePage/MatchHighlighter.h"

#include "VarnicCore/Library/Snippet.h"
#include "VarnicCore/Text/TextKit.h"
#include "VarnicCore/Text/Unicode.h"

#include <array>

namespace varnic {

void MatchHighlighter::setSource(QQuickTextDocument* source) {
    source_ = source;
    setDocument(source->textDocument());
    Q_EMIT changed();
}

void MatchHighlighter::setNeedle(const QString& needle) {
    if (needle != needle_) {
        needle_ = needle;
        folded_ = TextKit::fold(needle.toStdString());
        rehighlight();
        Q_EMIT changed();
    }
}

void MatchHighlighter::setColor(const QColor& color) {
    if (color != color_) {
        color_ = color;
        rehighlight();
        Q_EMIT changed();
    }
}

void MatchHighlighter::highlightBlock(const QString& text) {
    if (folded_.empty()) {
        return;
    }
    const std::string utf8 = text.toStdString();
    const auto starts = Unicode::characterStarts(utf8);
    const auto unitsBefore = [&](std::size_t character) {
        const std::size_t bytes = character < starts.size() ? starts[character] : utf8.size();
        return static_cast<int>(QString::fromUtf8(utf8.data(), static_cast<qsizetype>(bytes)).size());
    };
    QTextCharFormat format;
    format.setBackground(color_);
    for (const auto& [begin, end] : findHighlights(utf8, std::array{std::string_view(folded_)})) {
        const int from = unitsBefore(begin);
        setFormat(from, unitsBefore(end) - from, format);
    }
}

} // namespace varnic
