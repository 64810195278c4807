#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/Shell/MenuBarLabel.h"
#include "Varnic/Shell/Menus.h"
#include "Varnic/Views/SettingsViews/RecentCalls.h"

#include <QList>
#include <QMenu>
#include <QObject>
#include <QRect>
#include <QSystemTrayIcon>

#include <functional>
#include <utility>
#include <vector>

namespace varnic {

/// The icon in the desktop's tray, where there is one: a red dot while a recording runs, with its time in the tool tip.
/// Its menu has the latest calls too, since not every tray says where the icon is. Main thread; must not outlive the
/// model.
class TrayIcon : public QObject {
    Q_OBJECT

public:
    TrayIcon(AppModel& model, const std::vector<MenuEntry>& entries, QObject* parent = nullptr);

    /// Whether the user can reach the program by it now.
    [[nodiscard]] bool isReachable() const;

    /// The icon was clicked where the tray shows it, in points of the screen. Where a tray does not say, a click shows
    /// the program's window.
    std::function<void(const QRect& icon)> clicked = [](const QRect&) {};

private:
    void refresh();
    void refreshCalls();
    void activated(QSystemTrayIcon::ActivationReason reason);

    AppModel& model_;
    MenuBarLabel label_;
    QMenu menu_;
    QAction* time_;
    /// The line before which the latest calls stand.
    QAction* callsEnd_ = nullptr;
    QList<QAction*> calls_;
    std::vector<RecentCall> toldCalls_;
    std::vector<std::pair<MenuEntry, QAction*>> entries_;
    QSystemTrayIcon icon_;
};

} // namespace varnic
