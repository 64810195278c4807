#include "Varnic/Views/Theme/Native/Shadow.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace varnic {

namespace {

/// The distance of a point from the edge of a rounded rectangle around the origin; negative inside.
qreal distance(QPointF point, QSizeF half, qreal radius) {
    const qreal x = std::abs(point.x()) - half.width() + radius;
    const qreal y = std::abs(point.y()) - half.height() + radius;
    return std::hypot(std::max(x, 0.0), std::max(y, 0.0)) + std::min(std::max(x, y), 0.0) - radius;
}

} // namespace

Shadow::Shadow(QQuickItem* parent) : QQuickPaintedItem(parent) {
    connect(this, &Shadow::changed, this, [this] { update(); });
}

void Shadow::paint(QPainter* painter) {
    const QSizeF half(width() / 2 - blur_, height() / 2 - blur_);
    const qreal radius = std::min({radius_, half.width(), half.height()});
    // A blur of that radius is a Gaussian of half the radius as its deviation; across a straight edge that leaves
    // the error function of the distance.
    const qreal scale = blur_ / 2 * std::numbers::sqrt2;
    QImage image(QSizeF(width(), height()).toSize(), QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < image.height(); ++y) {
        auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y)); // how QImage hands out rows
        for (int x = 0; x < image.width(); ++x) {
            const QPointF point(x + 0.5 - width() / 2, y + 0.5 - height() / 2);
            const qreal share = std::erfc(distance(point, half, radius) / scale) / 2;
            const auto alpha = static_cast<int>(std::lround(share * color_.alpha()));
            line[x] = qPremultiply(qRgba(color_.red(), color_.green(), color_.blue(), alpha));
        }
    }
    painter->drawImage(QPointF(0, 0), image);
}

} // namespace varnic
