#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/Shell/LoginStart.h"
#include "Varnic/Shell/Menus.h"
#include "Varnic/Shell/MissingParts.h"
#include "Varnic/Shell/Notifications.h"
#include "Varnic/Shell/PillController.h"
#include "Varnic/Shell/QuitQuestion.h"
#include "Varnic/Shell/Request.h"
#include "VarnicPlatform/Desktop/DesktopEvents.h"
#include "VarnicPlatform/Desktop/SleepWatch.h"
#include "VarnicPlatform/Hotkey/Hotkey.h"

#include <QCoro/QCoroTask>
#include <QObject>
#include <QProperty>
#include <QSocketNotifier>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace varnic {

/// The program's steps at its start and at its end, and what ties the model to the desktop: it fills in those parts of
/// `AppModel::desktop` that need no window (pill, hotkey, programs in front and running). The window's part is
/// `activate`, the sounds, the clipboard and the file dialogs. Main thread; must not outlive the model.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    /// What other parts of the program bring. The tasks must not throw.
    struct Hooks {
        std::function<void()> startKit = [] {};
        /// Runs the self-test, which ends the process itself.
        std::function<QCoro::Task<>()> runSelfTest = []() -> QCoro::Task<> { co_return; };
        std::function<QCoro::Task<>(std::filesystem::path)> runSnapshots = [](std::filesystem::path) -> QCoro::Task<> {
            co_return;
        };
        std::function<void(AppModel&)> loadDemo = [](AppModel& model) { model.isDemo = true; };
        /// What the desktop brings now.
        std::function<DesktopParts()> desktopParts = DesktopParts::onBus;
        /// The value of an environment variable; nothing where it isn’t set.
        std::function<std::optional<std::string>(const char*)> environment;
        /// Lets the user say what is to become of notes that could not be saved.
        std::function<QCoro::Task<QuitQuestion::Answer>(QuitQuestion)> ask =
            [](QuitQuestion) -> QCoro::Task<QuitQuestion::Answer> { co_return QuitQuestion::Answer::quitAnyway; };
        /// Ends the event loop.
        std::function<void()> quit;
    };

    explicit AppDelegate(AppModel& model, QObject* parent = nullptr);
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;
    ~AppDelegate() override;

    Hooks hooks;

    /// The start, once the event loop runs. It returns when the library is there and the hotkey is registered.
    QCoro::Task<> applicationDidFinishLaunching();

    /// Does what a start of the program or another program asks; what comes before the library is there waits for it.
    void perform(const Request& request);

    enum class TerminateReply { now, later };
    enum class Occasion {
        /// Can be asked, and may say no.
        user,
        /// A polite kill, say, which would wait for an answer in vain: what cannot be saved is kept beside the library
        /// for the next start.
        system
    };

    /// Saves what is pending. `later` while a recording is closed and filed, and while the user is asked about notes
    /// that cannot be saved; after that `hooks.quit` is called, unless the user stays.
    TerminateReply applicationShouldTerminate(Occasion occasion = Occasion::user);

    /// What Quit and a polite kill do: `applicationShouldTerminate`, and `hooks.quit` at once where nothing is left to
    /// do.
    void terminate(Occasion occasion = Occasion::user);

    /// As `terminate` for the system, but returns when all is on disk and leaves the quitting to the caller: for a
    /// session manager that ends the program as soon as it has answered (QGuiApplication::commitDataRequest).
    void finishBeforeLogout();

    /// Closing the window leaves the program, and a recording, running.
    static constexpr bool terminatesAfterLastWindowClosed = false;

    /// The computer is about to sleep: ends a recording as a press of Stop does, and calls `done` once its files are
    /// closed and its note is on disk, or at once when none runs.
    void systemWillSleep(std::function<void()> done);

    /// How the global hotkey fares, for the settings; empty while it is off.
    QProperty<std::string> hotkeyNote;
    /// The same for programs. Where it is not registered, Hotkey::command can be bound in the desktop's settings.
    QProperty<Hotkey::State> hotkeyState{Hotkey::State::off};

    /// While true the hotkey does nothing, so that its keys can be pressed to choose another.
    void setHotkeyPaused(bool isPaused);

    [[nodiscard]] LoginStart& loginStart() { return loginStart_; }

    /// They don’t change; what they say does.
    [[nodiscard]] const Menus& menus() const { return menus_; }

    [[nodiscard]] PillController& pill() { return pill_; }

    [[nodiscard]] Notifications& notifications() { return notifications_; }

private:
    void terminateSoon();
    void applyHotkey();
    void takeHotkeyStatus(const Hotkey::Status& status);
    void observeSleep();
    void carryOut(const Request& request);
    QCoro::Task<> closeRecordingAndQuit();
    QCoro::Task<> askAndQuit();
    void goOnToSleep();

    AppModel& model_;
    Menus menus_;
    PillController pill_;
    Notifications notifications_;
    DesktopEvents events_;
    QSocketNotifier eventsNotifier_;
    LoginStart loginStart_;
    std::unique_ptr<Hotkey> hotkey_;
    bool isHotkeyPaused_ = false;
    std::unique_ptr<SleepWatch> sleepWatch_;
    std::function<void()> sleepDone_;
    bool isLaunched_ = false;
    /// The recording is being closed for the end of the program.
    bool isClosing_ = false;
    bool isAsking_ = false;
    /// From now on nobody is asked any more.
    bool mustEnd_ = false;
    std::vector<Request> waiting_;
};

} // namespace varnic
