#include "Varnic/Views/LiveView/PillWindow.h"

#include "VarnicPlatform/Desktop/FloatingWindow.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainterPath>
#include <QRegion>
#include <QScreen>

#include <algorithm>

namespace varnic {

namespace {

constexpr QSize pillSize(300, 44);
constexpr int belowTop = 12;
/// Between the window's edge and the pill's outline.
constexpr int margin = 2;

/// The nearest place to `wanted` in which the whole pill is on the screen.
QPoint within(const QRect& screen, const QPoint& wanted) {
    return {std::clamp(wanted.x(), screen.left(), std::max(screen.left(), screen.right() + 1 - pillSize.width())),
            std::clamp(wanted.y(), screen.top(), std::max(screen.top(), screen.bottom() + 1 - pillSize.height()))};
}

} // namespace

PillWindow::PillWindow(QWindow* parent) : QQuickWindow(parent) {
    // An ordinary window to Qt: with a tool window some desktops hide it beside other programs' windows, and bring the
    // main window to the front together with it.
    setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus);
    // Tiling desktops let a window float that has only one size.
    setMinimumSize(pillSize);
    setMaximumSize(pillSize);
    resize(pillSize);
    putInPlace();
    connect(&compositor_, &Compositor::changed, this, &PillWindow::cut);
    cut();
}

void PillWindow::putInPlace() {
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        const QRect available = screen->availableGeometry();
        setPosition(available.center().x() - pillSize.width() / 2, available.top() + belowTop);
    }
    wasDragged_ = false;
}

void PillWindow::cut() {
    QRegion outline;
    if (!isTranslucent()) {
        QPainterPath pill;
        const QRectF body = QRectF({}, pillSize).adjusted(margin, margin, -margin, -margin);
        pill.addRoundedRect(body, body.height() / 2, body.height() / 2);
        outline = QRegion(pill.toFillPolygon().toPolygon());
    }
    setMask(outline);
    Q_EMIT translucencyChanged();
}

void PillWindow::follow(const QPointF& point) {
    grip_ = point.toPoint();
    wasDragged_ = true;
}

/// We move the window ourselves: a window manager that is asked to may miss the release of the button, and the window
/// would stick to the pointer.
bool PillWindow::event(QEvent* event) {
    const bool isTaken = QQuickWindow::event(event);
    const auto* mouse = event->isPointerEvent() ? dynamic_cast<const QMouseEvent*>(event) : nullptr;
    if (mouse == nullptr) {
        return isTaken;
    }
    if (!mouse->buttons().testFlag(Qt::LeftButton)) {
        grip_.reset();
    } else if (grip_ && event->type() == QEvent::MouseMove) {
        const QPoint pointer = mouse->globalPosition().toPoint();
        const QScreen* under = QGuiApplication::screenAt(pointer);
        const QPoint wanted = pointer - *grip_;
        setPosition(under != nullptr ? within(under->geometry(), wanted) : wanted);
    }
    return isTaken;
}

/// The native window exists by now and is not on the screen yet.
void PillWindow::showEvent(QShowEvent* event) {
    if (QGuiApplication::screenAt(geometry().center()) == nullptr) {
        putInPlace(); // its screen is gone
    }
    if (const auto* x11 = qApp->nativeInterface<QNativeInterface::QX11Application>()) {
        FloatingWindow::prepare(x11->connection(), static_cast<std::uint32_t>(winId()));
    }
    QQuickWindow::showEvent(event);
}

} // namespace varnic
