#pragma once

#include <QColor>
#include <QQuickTextDocument>
#include <QSyntaxHighlighter>
#include <QtQmlIntegration>

namespace varnic {

/// Writes the end of a text that may still change in a paler ink.
class WetInk : public QSyntaxHighlighter {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickTextDocument* text READ text WRITE setText NOTIFY textChanged REQUIRED)
    /// How many characters are final.
    Q_PROPERTY(int firm READ firm WRITE setFirm NOTIFY inkChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY inkChanged)

public:
    explicit WetInk(QObject* parent = nullptr) : QSyntaxHighlighter(parent) {}

    [[nodiscard]] QQuickTextDocument* text() const { return text_; }

    void setText(QQuickTextDocument* text);

    [[nodiscard]] int firm() const { return firm_; }

    void setFirm(int characters);

    [[nodiscard]] QColor color() const { return color_; }

    void setColor(const QColor& color);

Q_SIGNALS:
    void textChanged();
    void inkChanged();

protected:
    void highlightBlock(const QString& text) override;

private:
    QQuickTextDocument* text_ = nullptr;
    int firm_ = 0;
    QColor color_;
};

} // namespace varnic
