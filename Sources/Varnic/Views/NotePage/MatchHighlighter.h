#pragma once

#include <QColor>
#include <QQuickTextDocument>
#include <QString>
#include <QSyntaxHighlighter>
#include <QtQmlIntegration>

#include <string>

namespace varnic {

/// Marks every place of a text editor's text that matches what is looked for; case, accents and width do not count.
/// Main thread.
class MatchHighlighter : public QSyntaxHighlighter {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickTextDocument* source READ source WRITE setSource NOTIFY changed REQUIRED)
    Q_PROPERTY(QString needle READ needle WRITE setNeedle NOTIFY changed)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY changed)

public:
    explicit MatchHighlighter(QObject* parent = nullptr) : QSyntaxHighlighter(parent) {}

    [[nodiscard]] QQuickTextDocument* source() const { return source_; }

    void setSource(QQuickTextDocument* source);

    [[nodiscard]] QString needle() const { return needle_; }

    void setNeedle(const QString& needle);

    [[nodiscard]] QColor color() const { return color_; }

    void setColor(const QColor& color);

Q_SIGNALS:
    void changed();

protected:
    void highlightBlock(const QString& text) override;

private:
    QQuickTextDocument* source_ = nullptr;
    QString needle_;
    std::string folded_;
    QColor color_;
};

} // namespace varnic
