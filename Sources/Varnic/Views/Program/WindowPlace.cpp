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

/// What a new window leaves of the screen for its frame, which is not known before it is shown, in points.
constexpr QSize frame(12, 44);

/// The same for a panel, where the desktop doesn't say what its panels take.
constexpr int panel = 48;

QSize roomOn(const QScreen& screen) {
    const QSize room = screen.availableSize() - frame;
    return screen.availableSize() == screen.size() ? room - QSize(0, panel) : room;
}

} // namespace

WindowPlace::WindowPlace(QWindow& window, QSettings& store, QObject* parent)
    : QObject(parent), window_(window), store_(store) {
    std::vector<QRect> screens;
    for (const QScreen* screen : QGuiApplication::screens()) {
        screens.push_back(screen->availableGeometry());
    }
    if (const QRect saved = store.value(rectangleKey).toRect(); saved.isValid() && !screens.empty()) {
        window.setGeometry(fit(saved, screens));
    } else if (const QScreen* screen = QGuiApplication::primaryScreen(); screen != nullptr && !saved.isValid()) {
        window.resize(window.size().boundedTo(roomOn(*screen)));
    }
    normal_ = window.geometry();
    if (store.value(maximizedKey).toBool()) {
        window.setWindowStates(Qt::WindowMaximized);
    }
    window.installEventFilter(this);
    // The size of a maximised window may come before the word that it is maximised.
    settling_.setSingleShot(true);
    settling_.setInterval(300);
    connect(&settling_, &QTimer::timeout, this, &WindowPlace::takePlace);
}

void WindowPlace::takePlace() {
    if (window_.windowStates() == Qt::WindowNoState) {
        normal_ = window_.geometry();
    }
}

WindowPlace::~WindowPlace() {
    save();
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
    if (type == QEvent::Resize || type == QEvent::Move) {
        settling_.start();
    } else if (type == QEvent::Close || type == QEvent::Hide) {
        save();
    }
    return QObject::eventFilter(watched, event);
}

void WindowPlace::save() {
    if (settling_.isActive()) {
        takePlace();
    }
    store_.setValue(rectangleKey, normal_);
    store_.setValue(maximizedKey, window_.windowStates().testFlag(Qt::WindowMaximized));
}

} // namespace varnic
