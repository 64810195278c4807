#include "Varnic/Views/Theme/Native/Highlighted.h"

#include "VarnicCore/Text/Unicode.h"

#include <algorithm>

namespace varnic {

namespace {

QString escaped(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toHtmlEscaped();
}

} // namespace

QString highlighted(std::string_view text, std::span<const Highlight> ranges) {
    const std::vector<std::size_t> starts = Unicode::characterStarts(text);
    const auto byte = [&](std::size_t character) {
        return character < starts.size() ? starts[character] : text.size();
    };
    QString html;
    std::size_t done = 0;
    for (const Highlight& range : ranges) {
        const std::size_t begin = byte(range.begin);
        const std::size_t end = std::max(begin, byte(range.end));
        html += escaped(text.substr(done, begin - done));
        html += QStringLiteral("<mark>") + escaped(text.substr(begin, end - begin)) + QStringLiteral("</mark>");
        done = end;
    }
    return html + escaped(text.substr(done));
}

QString Highlighter::richText(QString marked, const QColor& color) {
    return marked
        .replace(QStringLiteral("<mark>"),
                 QStringLiteral("<span style=\"background-color:%1\">").arg(color.name(QColor::HexArgb)))
        .replace(QStringLiteral("</mark>"), QStringLiteral("</span>"));
}

} // namespace varnic
