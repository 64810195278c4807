#include "Varnic/Views/Program/PillPresence.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QUrl>

namespace varnic {

PillPresence::PillPresence(MainWindow& window, QObject* parent) : QObject(parent), window_(window) {
    const QQuickWindow* main = &window.window();
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &PillPresence::refresh);
    connect(main, &QWindow::visibilityChanged, this, &PillPresence::refresh);
    for (const auto moved : {&QWindow::xChanged, &QWindow::yChanged, &QWindow::widthChanged, &QWindow::heightChanged}) {
        connect(main, moved, this, &PillPresence::refresh);
    }
}

void PillPresence::present() {
    if (!pill_) {
        QQmlComponent component(&window_.engine(), QUrl("qrc:/qt/qml/Varnic/LiveView/Pill.qml"));
        pill_.reset(qobject_cast<PillWindow*>(component.create()));
    }
    isWanted_ = true;
    refresh();
    if (pill_ && pill_->isVisible()) {
        pill_->raise();
    }
}

void PillPresence::orderOut() {
    isWanted_ = false;
    refresh();
}

void PillPresence::refresh() {
    if (pill_) {
        pill_->setVisible(isWanted_ && !isInTheWay());
    }
}

bool PillPresence::isInTheWay() const {
    const QQuickWindow& main = window_.window();
    const bool isInFront = QGuiApplication::focusWindow() != nullptr && main.isVisible() &&
                           !main.windowStates().testFlag(Qt::WindowMinimized);
    return isInFront && !pill_->wasDragged() && main.frameGeometry().intersects(pill_->geometry());
}

} // namespace varnic
