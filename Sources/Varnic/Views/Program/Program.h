#pragma once

#include "BrevinKit/Updater/Updater.h"
#include "Varnic/AppModel/AppModel.h"
#include "Varnic/Shell/AppDelegate.h"
#include "Varnic/Shell/RecordingNotice.h"
#include "Varnic/Shell/Request.h"
#include "Varnic/Shell/TerminationSignals.h"
#include "Varnic/Views/Program/MainWindow.h"
#include "Varnic/Views/Program/PillPresence.h"
#include "Varnic/Views/Program/ReadOnlyTextKeys.h"
#include "Varnic/Views/Program/TrayIcon.h"
#include "Varnic/Views/SettingsViews/MenuBarWindow.h"
#include "Varnic/Views/SettingsViews/SettingsWindow.h"

#include <QObject>

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
    QCoro::Task<> tellWhatIsMissing();
    [[nodiscard]] DesktopParts desktopParts() const;
    void fillInDesktop();
    void fillInHooks();
    void makePill();
    [[nodiscard]] bool isProcessing() const;
    [[nodiscard]] bool isSettingsVisible() const;
    [[nodiscard]] QWindow* windowInFront() const;
    void quitIfForsaken();
    void openSettings(SettingsRow row);
    void toggleMenuBar(const QRect& icon);
    brevin::Updater::Host updaterHost();
    void openUpdateWindow();

    AppModel model_;
    AppDelegate delegate_;
    brevin::Updater updater_;
    ReadOnlyTextKeys readOnlyTextKeys_;
    MainWindow window_;
    std::optional<TrayIcon> tray_;
    /// One of the two.
    std::optional<PillPresence> pill_;
    std::optional<RecordingNotice> notice_;
    std::unique_ptr<SettingsWindow> settings_;
    std::unique_ptr<MenuBarWindow> menuBar_;
    std::unique_ptr<QQuickWindow> updateWindow_;
    TerminationSignals signals_;
    QPropertyNotifier processingWatcher_;
    QPropertyNotifier importWatcher_;
    bool wasShown_ = false;
};

} // namespace varnic
