#include "Varnic/Views/LiveView/PillWindow.h"

#include <QGuiApplication>
#include <QScreen>

namespace varnic {

namespace {

constexpr QSize pillSize(300, 44);
constexpr int belowTop = 12;

} // namespace

PillWindow::PillWindow(QWindow* parent) : QQuickWindow(parent) {
    setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus);
    setColor(Qt::transparent);
    resize(pillSize);
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        const QRect available = screen->availableGeometry();
        setPosition(available.center().x() - pillSize.width() / 2, available.top() + belowTop);
    }
}

void PillWindow::move() {
    startSystemMove();
}

} // namespace varnic
