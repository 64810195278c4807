#pragma once

#include <QQuickItem>
#include <QString>

/// Finding things in a window. What repeaters, lists and loaders hold is no child of an object, but of an item.
namespace varnic {

/// The first object of that name (any, if empty) in an item.
template <typename Type = QQuickItem>
Type* within(QQuickItem* item, const QString& name) {
    for (QObject* own : QObjectList{item} + item->children()) {
        if (auto* const found = qobject_cast<Type*>(own); found && (name.isEmpty() || found->objectName() == name)) {
            return found;
        }
    }
    for (QQuickItem* child : item->childItems()) {
        if (auto* const found = within<Type>(child, name)) {
            return found;
        }
    }
    return nullptr;
}

/// Looks at an item and all in it that show, from the outside in.
template <typename Look>
void visitShown(QQuickItem* item, const Look& look) {
    if (item->isVisible()) {
        look(item);
        for (QQuickItem* child : item->childItems()) {
            visitShown(child, look);
        }
    }
}

} // namespace varnic
