#include "Varnic/Views/SettingsViews/MenuBarWindow.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace varnic {

namespace {

/// Points between icon and window.
constexpr int gap = 6;

} // namespace

MenuBarWindow::MenuBarWindow(QWindow* parent) : QQuickWindow(parent) {
    setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
}

QRect MenuBarWindow::place(const QRect& icon, const QSize& size, const QRect& screen) {
    QRect place(QPoint(), size);
    place.moveCenter(icon.center());
    if (icon.center().y() > screen.center().y()) {
        place.moveBottom(icon.top() - gap);
    } else {
        place.moveTop(icon.bottom() + gap);
    }
    place.moveLeft(std::clamp(place.left(), screen.left(), std::max(screen.left(), screen.right() - size.width())));
    place.moveTop(std::clamp(place.top(), screen.top(), std::max(screen.top(), screen.bottom() - size.height())));
    return place;
}

void MenuBarWindow::toggleAt(const QRect& icon) {
    if (isVisible()) {
        hide();
        return;
    }
    icon_ = icon;
    Q_EMIT aboutToShow();
    takePlace();
    show();
    raise();
    requestActivate();
}

void MenuBarWindow::takePlace() {
    const QScreen* iconScreen = QGuiApplication::screenAt(icon_.center());
    if (iconScreen == nullptr) {
        iconScreen = QGuiApplication::primaryScreen();
    }
    setPosition(place(icon_, size(), iconScreen->availableGeometry()).topLeft());
}

/// Its rows come and go while it shows, and must not grow over the icon.
void MenuBarWindow::resizeEvent(QResizeEvent* event) {
    QQuickWindow::resizeEvent(event);
    takePlace();
}

void MenuBarWindow::openVarnic() {
    hide();
    openProgram();
}

void MenuBarWindow::quit() {
    hide();
    quitProgram();
}

void MenuBarWindow::focusOutEvent(QFocusEvent* event) {
    QQuickWindow::focusOutEvent(event);
    hide();
}

} // namespace varnic
