#pragma once

#include "Varnic/Views/LiveView/PillWindow.h"
#include "Varnic/Views/Program/MainWindow.h"

#include <QObject>

#include <memory>

namespace varnic {

/// Keeps the pill in front of all windows while it is wanted, but out of the way of the main window: that tells itself
/// of the recording, and where the pill would lie over its buttons while the user works in it, the pill is hidden. A
/// place that the user has dragged it to holds. Main thread; must not outlive the main window.
class PillPresence : public QObject {
    Q_OBJECT

public:
    explicit PillPresence(MainWindow& window, QObject* parent = nullptr);

    /// Shows the pill, making it on the first call.
    void present();
    /// Hides it until it is wanted again.
    void orderOut();

private:
    void refresh();
    [[nodiscard]] bool isInTheWay() const;

    MainWindow& window_;
    std::unique_ptr<PillWindow> pill_;
    bool isWanted_ = false;
};

} // namespace varnic
