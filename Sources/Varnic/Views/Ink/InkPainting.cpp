#include "Varnic/Views/Ink/InkPainting.h"

#include <QPainter>
#include <QPen>

#include <algorithm>

namespace varnic {

QColor InkColors::of(InkPen::Ink ink) const {
    switch (ink) {
    case InkPen::Ink::you:
        return you;
    case InkPen::Ink::them:
        return them;
    case InkPen::Ink::quiet:
        break;
    }
    return quiet;
}

void prepareForInk(QPainter& painter) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
}

void stroke(QPainter& painter, const InkPen::Piece& piece, const InkColors& colors) {
    constexpr double miterLimit = 10;
    QColor color = colors.of(piece.ink);
    color.setAlphaF(static_cast<float>(static_cast<double>(color.alphaF()) * piece.opacity));
    QPen pen(color, piece.width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    pen.setMiterLimit(miterLimit);
    painter.setPen(pen);
    std::array<QPointF, std::tuple_size_v<decltype(piece.points)>> points;
    std::ranges::transform(piece.points, points.begin(),
                           [](const InkPen::Point& point) { return QPointF(point.x, point.y); });
    painter.drawPolyline(points.data(), static_cast<int>(points.size()));
}

} // namespace varnic
