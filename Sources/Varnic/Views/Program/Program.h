#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/Shell/AppDelegate.h"
#include "Varnic/Shell/Request.h"
#include "Varnic/Shell/TerminationSignals.h"
#include "Varnic/Views/Program/MainWindow.h"
#include "Varnic/Views/Program/TrayIcon.h"

#include <QObject>
#include <QQuickWindow>

#include <memory>
#include <optional>

namespace varnic {

/// The desktop program: the model, its shell, and the windows that show it. Main thread, with a QApplication.
class Program : public QObject {
    Q_OBJECT

public:
    /// Makes everything but shows and loads nothing. Throws std::runtime_error when the window cannot be made.
    explicit Program(AppPlaces places);

    /// Shows the window, unless the request is for a recording alone or for no window, and begins the start of the
    /// program.
    void start(const Request& request);

    [[nodiscard]] AppModel& model() { return model_; }

    /// Does what another start of the program asks.
    void perform(const Request& request) { delegate_.perform(request); }

private:
    void launch();
    void fillInDesktop();
    [[nodiscard]] bool isProcessing() const;
    void quitIfForsaken();
    void presentPill();

    AppModel model_;
    AppDelegate delegate_;
    MainWindow window_;
    std::optional<TrayIcon> tray_;
    std::unique_ptr<QQuickWindow> pill_;
    TerminationSignals signals_;
    QPropertyNotifier processingWatcher_;
    QPropertyNotifier importWatcher_;
    bool wasShown_ = false;
};

} // namespace varnic
