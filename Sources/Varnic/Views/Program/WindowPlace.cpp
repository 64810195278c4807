#include "Varnic/Views/Program/WindowPlace.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace varnic {

namespace {

constexpr const char* rectangleKey = "window/place";
constexpr const char* maximizedKey = "window/maximized";

/// How much of a title bar must be on a screen, in points.
constexpr QSize grip(120, 30);

} // namespace

WindowPlace::WindowPlace(QWindow& window, QSettings& store, QObject* parent)
    : QObject(parent), window_(window), store_(store) {
    std::vector<QRect> screens;
    for (const QScreen* screen : QGuiApplication::screens()) {
        screens.push_back(screen->availableGeometry());
    }
    if (const QRect saved = store.value(rectangleKey).toRect(); saved.isValid() && !screens.empty()) {
        window.setGeometry(fit(saved, screens));
    }
    normal_ = window.geometry();
    if (store.value(maximizedKey).toBool()) {
        window.setWindowStates(Qt::WindowMaximized);
    }
    window.installEventFilter(this);
}

QRect WindowPlace::fit(const QRect& saved, const std::vector<QRect>& screens) {
    const auto holdsTitle = [&saved](const QRect& screen) {
        const QRect title = QRect(saved.topLeft(), QSize(saved.width(), grip.height())) & screen;
        return title.width() >= grip.width() && title.height() >= grip.height();
    };
    const auto found = std::ranges::find_if(screens, holdsTitle);
    const QRect& screen = found == screens.end() ? screens.front() : *found;
    QRect place(saved.topLeft(), saved.size().boundedTo(screen.size()));
    if (found == screens.end()) {
        place.moveCenter(screen.center());
    }
    return place;
}

bool WindowPlace::eventFilter(QObject* watched, QEvent* event) {
    const auto type = event->type();
    if ((type == QEvent::Resize || type == QEvent::Move) && window_.windowStates() == Qt::WindowNoState) {
        normal_ = window_.geometry();
    } else if (type == QEvent::Close || type == QEvent::Hide) {
        save();
    }
    return QObject::eventFilter(watched, event);
}

void WindowPlace::save() {
    store_.setValue(rectangleKey, normal_);
    store_.setValue(maximizedKey, window_.windowStates().testFlag(Qt::WindowMaximized));
}

} // namespace varnic
