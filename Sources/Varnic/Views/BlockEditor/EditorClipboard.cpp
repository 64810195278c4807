#include "Varnic/Views/BlockEditor/EditorClipboard.h"

#include "VarnicCore/Editor/BlockSelection.h"

#include <QGuiApplication>
#include <QMimeData>
#include <QRegularExpression>

#include <vector>

namespace varnic::EditorClipboard {

namespace {

constexpr const char* markdownType = "text/markdown";

/// As long as this program owns the clipboard, what it copied comes back whole.
class BlocksMimeData : public QMimeData {
    Q_OBJECT

public:
    explicit BlocksMimeData(std::vector<Block> blocks) : blocks_(std::move(blocks)) {}

    [[nodiscard]] const std::vector<Block>& blocks() const { return blocks_; }

private:
    std::vector<Block> blocks_;
};

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

/// Only a table tells plain text that is Markdown from other text; all else means the same in both.
bool holdsMarkdownTable(const QString& text) {
    static const QRegularExpression ruleUnderHeader(R"(^\s*\|(\s*:?-+:?\s*\|)+\s*$)",
                                                    QRegularExpression::MultilineOption);
    return ruleUnderHeader.match(text).hasMatch();
}

} // namespace

void copy(QClipboard::Mode mode, const Note& note, const TextSpan& span, const ExportOptions& options) {
    auto* const data = new BlocksMimeData(BlockSelection::blocks(span, note));
    data->setText(text(BlockSelection::plainText(span, note)));
    data->setData(markdownType, QByteArray::fromStdString(BlockSelection::markdown(span, note, options)));
    QGuiApplication::clipboard()->setMimeData(data, mode);
}

bool holdsBlocks(QClipboard::Mode mode, bool anything) {
    const QMimeData* const data = QGuiApplication::clipboard()->mimeData(mode);
    if (data == nullptr) {
        return false;
    }
    if (qobject_cast<const BlocksMimeData*>(data) != nullptr) {
        return true;
    }
    const QString plain = data->hasText() ? data->text() : QString::fromUtf8(data->data(markdownType));
    return anything ? !plain.isEmpty() : plain.trimmed().contains('\n');
}

TextPlace paste(QClipboard::Mode mode, const TextPlace& place, Note& note, Date now) {
    const QMimeData* const data = QGuiApplication::clipboard()->mimeData(mode);
    if (const auto* const own = qobject_cast<const BlocksMimeData*>(data)) {
        return BlockSelection::paste(own->blocks(), place, note, now);
    }
    if (data->hasFormat(markdownType)) {
        return BlockSelection::paste(data->data(markdownType).toStdString(), true, place, note, now);
    }
    const QString plain = data->text();
    return BlockSelection::paste(plain.toStdString(), holdsMarkdownTable(plain), place, note, now);
}

} // namespace varnic::EditorClipboard

#include "EditorClipboard.moc"
