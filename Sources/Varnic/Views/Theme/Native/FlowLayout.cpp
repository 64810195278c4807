#include "Varnic/Views/Theme/Native/FlowLayout.h"

#include <algorithm>

namespace varnic {

namespace {

constexpr qreal lineWithoutWidth = 600;

} // namespace

FlowLayout::FlowLayout(QQuickItem* parent) : QQuickItem(parent) {}

void FlowLayout::setSpacing(qreal spacing) {
    if (spacing == spacing_) {
        return;
    }
    spacing_ = spacing;
    polish();
    Q_EMIT spacingChanged();
}

void FlowLayout::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemChildAddedChange) {
        for (const auto signal : {&QQuickItem::widthChanged, &QQuickItem::heightChanged, &QQuickItem::visibleChanged}) {
            connect(data.item, signal, this, &QQuickItem::polish);
        }
        polish();
    } else if (change == ItemChildRemovedChange) {
        disconnect(data.item, nullptr, this, nullptr);
        polish();
    }
    QQuickItem::itemChange(change, data);
}

void FlowLayout::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    if (now.width() != before.width()) {
        polish();
    }
}

void FlowLayout::componentComplete() {
    QQuickItem::componentComplete();
    updatePolish();
}

void FlowLayout::updatePolish() {
    const qreal maximum = widthValid() ? width() : lineWithoutWidth;
    qreal x = 0;
    qreal y = 0;
    qreal lineHeight = 0;
    qreal widest = 0;
    for (QQuickItem* const child : childItems()) {
        if (!child->isVisible() || child->size().isNull()) {
            continue;
        }
        if (x > 0 && x + child->width() > maximum) {
            y += lineHeight + spacing_;
            x = 0;
            lineHeight = 0;
        }
        child->setPosition({x, y});
        x += child->width() + spacing_;
        lineHeight = std::max(lineHeight, child->height());
        widest = std::max(widest, x - spacing_);
    }
    setImplicitSize(widest, y + lineHeight);
}

} // namespace varnic
