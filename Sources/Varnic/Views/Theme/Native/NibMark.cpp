#include "Varnic/Views/Theme/Native/NibMark.h"

#include <QPainter>

#include <algorithm>

namespace varnic {

QPainterPath nibShape(const QRectF& rectangle) {
    const auto at = [&](qreal x, qreal y) {
        return rectangle.topLeft() + QPointF(x * rectangle.width(), y * rectangle.height());
    };
    QPainterPath path(at(0.5, 1));
    path.cubicTo(at(0.36, 0.8), at(0.08, 0.58), at(0.08, 0.38));
    path.lineTo(at(0.2, 0));
    path.lineTo(at(0.8, 0));
    path.lineTo(at(0.92, 0.38));
    path.cubicTo(at(0.92, 0.58), at(0.64, 0.8), at(0.5, 1));
    path.closeSubpath();
    return path;
}

void paintNib(QPainter& painter, const QRectF& square, const QColor& color, const QColor& paper) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(nibShape(square), color);
    const qreal size = square.width();
    const QPointF centre = square.center();
    painter.setPen(Qt::NoPen);
    painter.setBrush(paper);
    const qreal hole = 0.13 * size / 2;
    painter.drawEllipse(centre - QPointF(0, 0.08 * size), hole, hole);
    QRectF slit(0, 0, std::max(0.04 * size, 1.0), 0.42 * size);
    slit.moveCenter(centre + QPointF(0, 0.2 * size));
    painter.fillRect(slit, paper);
}

NibMark::NibMark(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &NibMark::changed, this, &NibMark::refresh);
    refresh();
}

void NibMark::refresh() {
    setImplicitSize(size_, size_);
    update();
}

void NibMark::paint(QPainter* painter) {
    paintNib(*painter, QRectF(0, 0, size_, size_), color_, paper_);
}

} // namespace varnic
