#include "Varnic/Views/Program/ReadOnlyTextKeys.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace varnic {

ReadOnlyTextKeys::ReadOnlyTextKeys(QObject* parent) : QObject(parent) {
    QCoreApplication::instance()->installEventFilter(this);
}

bool ReadOnlyTextKeys::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::ShortcutOverride || !watched->inherits("QQuickTextEdit") ||
        !watched->property("readOnly").toBool()) {
        return false;
    }
    const auto& key = *static_cast<QKeyEvent*>(event);
    if (key.matches(QKeySequence::Copy) || key.matches(QKeySequence::SelectAll)) {
        return false;
    }
    event->ignore();
    return true;
}

} // namespace varnic
