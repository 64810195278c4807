#include "Varnic/Views/Ink/InkTrail.h"

#include <QPainter>
#include <QQuickWindow>

#include <algorithm>

namespace varnic {

namespace {

/// What stays free at the right end, in points.
constexpr double nibRoom = 46;
constexpr double margin = 4;

InkTrail::Leader leaderOf(InkPen::Ink ink) {
    switch (ink) {
    case InkPen::Ink::you:
        return InkTrail::You;
    case InkPen::Ink::them:
        return InkTrail::Them;
    case InkPen::Ink::quiet:
        break;
    }
    return InkTrail::Quiet;
}

} // namespace

InkTrail::InkTrail(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setOpaquePainting(false);
}

void InkTrail::setHistory(InkHistory* history) {
    if (history_ == history) {
        return;
    }
    if (history_) {
        history_->disconnect(this);
    }
    history_ = history;
    if (history_) {
        connect(history_, &InkHistory::changed, this, &InkTrail::follow);
    }
    Q_EMIT historyChanged();
    follow();
}

QString InkTrail::speaking() const {
    switch (leader_) {
    case You:
        return QStringLiteral("You are speaking");
    case Them:
        return QStringLiteral("They are speaking");
    case Quiet:
        break;
    }
    return QStringLiteral("Quiet");
}

double InkTrail::usable() const {
    return std::max(width() - (showNib_ ? nibRoom : margin), 0.0);
}

/// The place on the paper at the item's left edge.
double InkTrail::left() const {
    const std::int64_t written = history_ ? history_->end() - history_->first() : 0;
    const std::int64_t shown = std::min(static_cast<std::int64_t>(usable() / InkStrip::step) + 1, written);
    const std::int64_t end = history_ ? history_->end() : 0;
    if (!showNib_) {
        return static_cast<double>(end - shown) * InkStrip::step;
    }
    return static_cast<double>(std::max(end - 1, std::int64_t(0))) * InkStrip::step - usable();
}

InkStrip::Setting InkTrail::setting() const {
    return {.width = width(),
            .height = height(),
            .amplitude = amplitude_,
            .scale = window() != nullptr ? window()->effectiveDevicePixelRatio() : 1,
            .colors = colors_};
}

/// The pen goes to where the history has come.
void InkTrail::follow() {
    QPointF head(usable(), height() / 2);
    Leader leader = Quiet;
    if (history_ && history_->end() > 0) {
        const InkPen::Levels levels = history_->latest();
        const InkPen::Point point = InkPen::point(static_cast<double>(history_->end() - 1),
                                                  std::max(levels.you, levels.them), InkStrip::line(setting()));
        head = QPointF(point.x - left(), point.y);
        leader = leaderOf(InkPen::ink(levels));
    }
    if (head != head_ || leader != leader_) {
        head_ = head;
        leader_ = leader;
        Q_EMIT headChanged();
    }
    update();
}

void InkTrail::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickPaintedItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size()) {
        follow();
    }
}

void InkTrail::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange) {
        update();
    }
    QQuickPaintedItem::itemChange(change, data);
}

/// The main thread waits while this runs on the thread that renders.
void InkTrail::paint(QPainter* painter) {
    if (!history_ || width() < 1 || height() < 1) {
        return;
    }
    strip_.write(*history_, setting());
    strip_.paint(*painter, left());
}

} // namespace varnic
