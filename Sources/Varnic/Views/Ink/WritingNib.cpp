#include "Varnic/Views/Ink/WritingNib.h"

#include "Varnic/Views/Theme/Native/NibMark.h"

#include <QPainter>

namespace varnic {

namespace {

/// The side of the nib's square, and of one that holds it however it leans, in points.
constexpr double nibSize = 34;
constexpr double room = 50;
constexpr double lean = 35;

} // namespace

WritingNib::WritingNib(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setImplicitSize(room, room);
    connect(this, &WritingNib::changed, this, [this] { update(); });
}

void WritingNib::paint(QPainter* painter) {
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(width() / 2, height() / 2);
    painter->rotate(lean);
    paintNib(*painter, QRectF(-nibSize / 2, -nibSize / 2, nibSize, nibSize), color_, paper_);
}

} // namespace varnic
