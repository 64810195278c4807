#include "Varnic/Views/Theme/Native/FocusKeeper.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace varnic {

namespace {

/// More is not gone back through.
constexpr std::size_t longestHistory = 32;

bool canBeUsed(const QQuickItem* item) {
    return item != nullptr && item->window() != nullptr && item->isVisible() && item->isEnabled();
}

/// Whether keys do something there. A scope without anything in it that has the keyboard only stands for its controls.
bool isPlace(const QQuickItem* item) {
    return canBeUsed(item) && item != item->window()->contentItem() &&
           (!item->isFocusScope() || item->activeFocusOnTab());
}

bool isTypedIn(const QQuickItem* item) {
    return item->flags().testFlag(QQuickItem::ItemAcceptsInputMethod);
}

/// The focus scope around an item; null around none.
QQuickItem* scopeAround(QQuickItem* item) {
    do {
        item = item == nullptr ? nullptr : item->parentItem();
    } while (item != nullptr && !item->isFocusScope());
    return item;
}

/// What the Tab key stops at for an item: a list for its rows.
QQuickItem* stopAt(QQuickItem* item) {
    QQuickItem* const scope = scopeAround(item);
    return scope != nullptr && scope->activeFocusOnTab() && !item->activeFocusOnTab() ? scope : item;
}

/// The popup around an item, else null.
QQuickItem* popupAround(QQuickItem* item) {
    while (item != nullptr && !item->inherits("QQuickPopupItem")) {
        item = item->parentItem();
    }
    return item;
}

bool isMenu(const QQuickItem* popup) {
    return popup->parent() != nullptr && popup->parent()->inherits("QQuickMenu");
}

/// Whether the keyboard only ever passes by there, as on its way over the edge of a column.
bool isPassedBy(const QQuickItem* item) {
    return item != nullptr && item->property("isPassedBy").toBool();
}

/// Scrolls to what has the keyboard and is wholly out of sight.
void reveal(QQuickItem* item) {
    for (QQuickItem* outer = item->parentItem(); outer != nullptr; outer = outer->parentItem()) {
        if (!outer->inherits("QQuickFlickable") || outer->inherits("QQuickItemView")) {
            continue; // a list shows its current row by itself
        }
        const qreal top = item->mapToItem(outer, QPointF(0, 0)).y();
        if (top + item->height() <= 0 || top >= outer->height()) {
            const qreal end = std::max(outer->property("contentHeight").toReal() - outer->height(), 0.0);
            const qreal middle = outer->property("contentY").toReal() + top + (item->height() - outer->height()) / 2;
            outer->setProperty("contentY", std::clamp(middle, 0.0, end));
        }
    }
}

/// What the Tab key comes to first in an item.
QQuickItem* firstStop(QQuickItem* item) {
    for (QQuickItem* const child : item->childItems()) {
        if (!canBeUsed(child)) {
            continue;
        }
        if (child->activeFocusOnTab() && !isTypedIn(child) && !child->inherits("QQuickScrollBar")) {
            return child;
        }
        if (QQuickItem* const found = firstStop(child)) {
            return found;
        }
    }
    return nullptr;
}

/// Where the keyboard would be in a scope; null where that is a text.
QQuickItem* placeIn(QQuickItem* scope) {
    QQuickItem* chosen = scope;
    while (chosen->isFocusScope() && chosen->scopedFocusItem() != nullptr) {
        chosen = chosen->scopedFocusItem();
    }
    if (isTypedIn(chosen)) {
        return nullptr;
    }
    return isPlace(chosen) ? chosen : firstStop(chosen->isFocusScope() ? chosen : scopeAround(chosen));
}

} // namespace

FocusKeeper::FocusKeeper(QObject* parent) : QObject(parent) {
    soon_.setSingleShot(true);
    soon_.setInterval(std::chrono::milliseconds::zero());
    connect(&soon_, &QTimer::timeout, this, &FocusKeeper::look);
}

void FocusKeeper::setWindow(QQuickWindow* window) {
    if (window == window_) {
        return;
    }
    if (window_ != nullptr) {
        window_->disconnect(&soon_);
    }
    window_ = window;
    history_.clear();
    if (window_ != nullptr) {
        connect(window_, &QQuickWindow::activeFocusItemChanged, &soon_, qOverload<>(&QTimer::start));
        soon_.start();
    }
    Q_EMIT windowChanged();
}

void FocusKeeper::look() {
    // A window that isn't in front has no place for the keyboard, and finds its own again when it comes to the front.
    if (window_ == nullptr || !window_->isActive()) {
        return;
    }
    QQuickItem* const now = stopAt(window_->activeFocusItem());
    if (absent_ != nullptr && now == standIn_ && canBeUsed(absent_)) {
        absent_->forceActiveFocus(Qt::OtherFocusReason);
    } else if (QQuickItem* const popup = popupAround(now)) {
        QQuickItem* const first = isPlace(now) || isMenu(popup) ? nullptr : firstStop(popup);
        if (first != nullptr) {
            first->forceActiveFocus(Qt::PopupFocusReason);
        }
        watch(now);
    } else if (isPlace(now)) {
        remember(now);
        reveal(window_->activeFocusItem());
    } else {
        restore();
    }
}

void FocusKeeper::remember(QQuickItem* item) {
    if (item != standIn_) {
        absent_ = nullptr;
        standIn_ = nullptr;
    }
    std::erase_if(history_, [item](const Place& place) { return place.item == item; });
    if (history_.size() == longestHistory) {
        history_.erase(history_.begin());
    }
    Place place{.item = item, .scopes = {}};
    // The outermost scope holds the whole window, where nothing is near.
    for (QQuickItem* around = item->parentItem(); around != nullptr; around = around->parentItem()) {
        if (around->isFocusScope() && around->parentItem() != window_->contentItem() &&
            around != window_->contentItem()) {
            place.scopes.emplace_back(around);
        }
    }
    history_.push_back(std::move(place));
    watch(item);
}

void FocusKeeper::watch(QQuickItem* item) {
    for (const QMetaObject::Connection& connection : std::exchange(watched_, {})) {
        disconnect(connection);
    }
    for (QQuickItem* const changing : {item, absent_.data()}) {
        if (changing != nullptr) {
            watched_.push_back(connect(changing, &QQuickItem::visibleChanged, &soon_, qOverload<>(&QTimer::start)));
            watched_.push_back(connect(changing, &QQuickItem::enabledChanged, &soon_, qOverload<>(&QTimer::start)));
        }
    }
}

/// The place itself, or what is left near it; null where nothing is.
QQuickItem* FocusKeeper::nearest(const Place& place) {
    if (canBeUsed(place.item)) {
        return place.item;
    }
    for (const QPointer<QQuickItem>& scope : place.scopes) {
        if (canBeUsed(scope)) {
            QQuickItem* const left = isPlace(scope) ? scope.data() : placeIn(scope);
            if (left != nullptr) {
                return left;
            }
        }
    }
    return nullptr;
}

void FocusKeeper::restore() {
    QQuickItem* next = nullptr;
    for (auto place = history_.rbegin(); place != history_.rend() && next == nullptr; ++place) {
        next = isPassedBy(place->item) ? nullptr : nearest(*place);
    }
    if (next == nullptr) {
        next = placeIn(window_->contentItem());
    }
    QQuickItem* const lost = history_.empty() ? nullptr : history_.back().item.data();
    if (lost != nullptr && lost != next && !isTypedIn(lost)) {
        absent_ = lost;
        standIn_ = next;
    }
    watch(absent_);
    if (next != nullptr) {
        next->forceActiveFocus(Qt::OtherFocusReason);
    }
}

bool FocusKeeper::back() {
    if (history_.empty()) {
        return false;
    }
    const QQuickItem* const here = scopeAround(history_.back().item);
    QQuickItem* before = nullptr;
    do {
        history_.pop_back();
        before = history_.empty() ? nullptr : nearest(history_.back());
    } while (!history_.empty() && (before == nullptr || scopeAround(before) == here));
    if (before != nullptr) {
        before->forceActiveFocus(Qt::OtherFocusReason);
    }
    return before != nullptr;
}

} // namespace varnic
