#pragma once

#include <QColor>
#include <QFont>
#include <QQuickPaintedItem>
#include <QtQmlIntegration>

namespace varnic {

/// A symbol in one colour, sized and weighted like the type that it stands beside.
class Symbol : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// One of `allSymbols`; nothing is drawn for another.
    Q_PROPERTY(QString name MEMBER name_ NOTIFY changed)
    /// The size of the type, in points. The symbol's square is a little larger.
    Q_PROPERTY(qreal size MEMBER size_ NOTIFY changed)
    /// The weight of the type, as in QFont; it sets the width of the strokes.
    Q_PROPERTY(int weight MEMBER weight_ NOTIFY changed)
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)
    /// Degrees clockwise. Drawn anew, since a turned picture of so few pixels would be ragged.
    Q_PROPERTY(qreal turn MEMBER turn_ NOTIFY changed)

public:
    explicit Symbol(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    void refresh();

    QString name_;
    qreal size_ = 13;
    int weight_ = QFont::Normal;
    QColor color_;
    qreal turn_ = 0;
};

} // namespace varnic
