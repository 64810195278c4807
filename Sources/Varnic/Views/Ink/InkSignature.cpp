#include "Varnic/Views/Ink/InkSignature.h"

#include <QPainter>

namespace varnic {

InkSignature::InkSignature(QQuickItem* parent) : QQuickPaintedItem(parent) {}

void InkSignature::setCall(const CallInk& call) {
    if (call_ != call) {
        call_ = call;
        Q_EMIT callChanged();
        update();
    }
}

void InkSignature::change(QColor& field, const QColor& color) {
    if (field != color) {
        field = color;
        Q_EMIT lookChanged();
        update();
    }
}

void InkSignature::paint(QPainter* painter) {
    constexpr double step = 2.4;
    constexpr double swing = 0.42;
    const InkPen::Line line{.step = step, .startX = 0, .phase = 0, .mid = height() / 2, .amplitude = height() * swing};
    prepareForInk(*painter);
    for (const InkPen::Piece& piece : InkPen::draw(call_.levels(static_cast<int>(width() / step)), line)) {
        stroke(*painter, piece, colors_);
    }
}

} // namespace varnic
