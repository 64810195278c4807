#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/Shell/MenuBarLabel.h"
#include "Varnic/Shell/Menus.h"

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

#include <utility>
#include <vector>

namespace varnic {

/// The icon in the desktop's tray, where there is one: a red dot while a recording runs, with its time in the tool tip.
/// Main thread; must not outlive the model.
class TrayIcon : public QObject {
    Q_OBJECT

public:
    TrayIcon(AppModel& model, const std::vector<MenuEntry>& entries, QObject* parent = nullptr);

    /// Whether the user can reach the program by it now.
    [[nodiscard]] bool isReachable() const;

private:
    void refresh();

    AppModel& model_;
    MenuBarLabel label_;
    QMenu menu_;
    QAction* time_;
    std::vector<std::pair<MenuEntry, QAction*>> entries_;
    QSystemTrayIcon icon_;
};

} // namespace varnic
