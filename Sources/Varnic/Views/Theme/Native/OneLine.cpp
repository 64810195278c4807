#include "Varnic/Views/Theme/Native/OneLine.h"

#include <QRegularExpression>

#include <algorithm>

namespace varnic {

QString oneLine(QString text) {
    static const QRegularExpression ends("\\A\\R+|\\R+\\z");
    static const QRegularExpression breaks("\\R+");
    return text.remove(ends).replace(breaks, " ");
}

QValidator::State OneLine::validate(QString& text, int& cursor) const {
    const auto behind = oneLine(text.mid(cursor)).size(); // stays behind the cursor
    text = oneLine(text);
    cursor = static_cast<int>(std::max<qsizetype>(text.size() - behind, 0));
    return Acceptable;
}

} // namespace varnic
