#pragma once

#include <QColor>
#include <QPainterPath>
#include <QQuickPaintedItem>
#include <QtQmlIntegration>

namespace varnic {

/// The outline of a pen's nib, tip down, filling the rectangle.
QPainterPath nibShape(const QRectF& rectangle);

/// The program's mark: a nib with its breather hole and its slit. The holes are of the paper's colour.
void paintNib(QPainter& painter, const QRectF& square, const QColor& color, const QColor& paper);

/// The mark as an item, in colours that it is given.
class NibMark : public QQuickPaintedItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(PaintedNib)
    /// The side of its square, in points.
    Q_PROPERTY(qreal size MEMBER size_ NOTIFY changed)
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)
    /// The colour of what it stands on.
    Q_PROPERTY(QColor paper MEMBER paper_ NOTIFY changed)

public:
    explicit NibMark(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    void refresh();

    qreal size_ = 20;
    QColor color_;
    QColor paper_ = Qt::white;
};

} // namespace varnic
