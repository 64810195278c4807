#include "Varnic/Views/SettingsViews/SettingsWindow.h"

#include "Varnic/Shell/AppDelegate.h"
#include "Varnic/Views/Context/ViewContext.h"

#include <QGuiApplication>
#include <QMetaEnum>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace varnic {

namespace {

constexpr const char* tabKey = "settingsTab";

/// The form in which a tab is stored: "general".
QString rawValue(SettingsWindow::Tab tab) {
    return QString(QMetaEnum::fromType<SettingsWindow::Tab>().valueToKey(tab)).toLower();
}

SettingsWindow::Tab tabFrom(const QString& raw) {
    for (const auto tab : {SettingsWindow::Recording, SettingsWindow::Summaries, SettingsWindow::About}) {
        if (rawValue(tab) == raw) {
            return tab;
        }
    }
    return SettingsWindow::General;
}

SettingsWindow::Tab tabOf(SettingsRow row) {
    switch (row) {
    case SettingsRow::beginning:
    case SettingsRow::hotkey:
        break;
    case SettingsRow::microphone:
    case SettingsRow::systemAudio:
    case SettingsRow::speech:
    case SettingsRow::language:
    case SettingsRow::library:
        return SettingsWindow::Recording;
    case SettingsRow::summaries:
    case SettingsRow::provider:
    case SettingsRow::key:
        return SettingsWindow::Summaries;
    case SettingsRow::updates:
        return SettingsWindow::About;
    }
    return SettingsWindow::General;
}

} // namespace

SettingsWindow::SettingsWindow(QWindow* parent) : QQuickWindow(parent) {}

void SettingsWindow::componentComplete() {
    model_ = &ViewContext::of(this).model;
    tab_ = tabFrom(model_->settings.store().value(tabKey).toString());
    Q_EMIT tabChanged();
}

void SettingsWindow::setTab(Tab tab) {
    if (tab == tab_) {
        return;
    }
    setRow(None);
    tab_ = tab;
    model_->settings.store().setValue(tabKey, rawValue(tab));
    Q_EMIT tabChanged();
}

void SettingsWindow::setRow(Row row) {
    if (row != row_) {
        row_ = row;
        Q_EMIT rowChanged();
    }
}

void SettingsWindow::open(SettingsRow row) {
    // Also to a row that is marked already.
    setRow(None);
    if (row != SettingsRow::beginning) {
        setTab(tabOf(row));
    }
    if (windowStates().testFlag(Qt::WindowMinimized)) {
        setWindowStates(windowStates() & ~Qt::WindowMinimized);
    }
    if (!std::exchange(isPlaced_, true)) {
        placeOverFront();
    }
    show();
    raise();
    requestActivate();
    setRow(static_cast<Row>(row));
}

/// In the middle of the window that the user is in, and wholly on its screen.
void SettingsWindow::placeOverFront() {
    const QWindow* front = QGuiApplication::focusWindow();
    const QRect screen = (front != nullptr ? front->screen() : QGuiApplication::primaryScreen())->availableGeometry();
    QRect place(QPoint(), size().boundedTo(screen.size()));
    place.moveCenter(front != nullptr ? front->geometry().center() : screen.center());
    place.moveLeft(std::clamp(place.left(), screen.left(), screen.right() - place.width() + 1));
    place.moveTop(std::clamp(place.top(), screen.top(), screen.bottom() - place.height() + 1));
    setGeometry(place);
}

void SettingsWindow::quit() {
    if (AppDelegate* shell = ViewContext::of(this).shell) {
        shell->terminate();
    }
}

void SettingsWindow::hideEvent(QHideEvent* event) {
    QQuickWindow::hideEvent(event);
    setRow(None);
}

} // namespace varnic
