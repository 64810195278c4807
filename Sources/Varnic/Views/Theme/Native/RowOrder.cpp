#include "Varnic/Views/Theme/Native/RowOrder.h"

#include <algorithm>

namespace varnic {

void RowOrder::setListView(QQuickItem* list) {
    if (list == list_) {
        return;
    }
    if (list_ != nullptr) {
        list_->disconnect(this);
    }
    list_ = list;
    if (list_ != nullptr) {
        connect(list_, &QQuickItem::windowChanged, this, &RowOrder::follow);
    }
    follow(list_ != nullptr ? list_->window() : nullptr);
    Q_EMIT listViewChanged();
}

void RowOrder::follow(QQuickWindow* window) {
    disconnect(pictures_);
    if (window != nullptr) {
        pictures_ = connect(window, &QQuickWindow::afterAnimating, this, &RowOrder::sort);
    }
}

void RowOrder::sort() {
    auto* const content = list_->property("contentItem").value<QQuickItem*>();
    QList<QQuickItem*> items = content->childItems();
    if (std::ranges::is_sorted(items, {}, &QQuickItem::y)) {
        return;
    }
    std::ranges::stable_sort(items, {}, &QQuickItem::y);
    for (qsizetype i = 1; i < items.size(); ++i) {
        items[i]->stackAfter(items[i - 1]);
    }
}

} // namespace varnic
