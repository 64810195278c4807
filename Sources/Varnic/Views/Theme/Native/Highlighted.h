#pragma once

#include "VarnicCore/Library/Snippet.h"

#include <QColor>
#include <QObject>
#include <QString>
#include <QtQmlIntegration>

#include <span>
#include <string_view>

namespace varnic {

/// The text as HTML with `<mark>` around each range. The ranges are in order and do not overlap. Pure.
QString highlighted(std::string_view text, std::span<const Highlight> ranges);

/// Brings the marks of `highlighted` on screen.
class Highlighter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// HTML for an item whose textFormat is RichText, which knows no marks: a background of that colour for each.
    [[nodiscard]] Q_INVOKABLE static QString richText(QString marked, const QColor& color);
};

} // namespace varnic
