#pragma once

#include <QRegularExpression>
#include <QString>

#include <string>

namespace varnic {

/// What was put into a field of one line. Qt's keeps the line breaks of what is pasted, though it shows none, and other
/// programs copy one behind each name.
inline std::string oneLine(QString put) {
    static const QRegularExpression ends("\\A\\R+|\\R+\\z");
    static const QRegularExpression breaks("\\R+");
    return put.remove(ends).replace(breaks, " ").toStdString();
}

} // namespace varnic
