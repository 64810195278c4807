#pragma once

#include "VarnicPlatform/Desktop/BackgroundPortal.h"

#include <QProperty>

#include <memory>
#include <optional>
#include <string>

namespace varnic {

class AppSettings;
class DesktopEvents;

/// Whether Varnic is started in the background when the user logs in; off unless asked for. It is an entry of the
/// desktop and not a setting of ours, since the desktop's own settings may take it away; in a sandbox, where it can't
/// be looked at, it is what the desktop said last. Main thread.
class LoginStart {
public:
    /// Both must outlive this. In a sandbox the desktop's portal is asked.
    LoginStart(DesktopEvents& events, AppSettings& settings, bool isSandboxed = BackgroundPortal::isNeeded());

    QProperty<bool> isOn{false};
    /// The user's sentence about what the desktop refused; empty where all went well.
    QProperty<std::string> problem;

    /// Looks how it is now; for a window that comes to the front.
    void look();

    /// Changes it; `isOn` follows, at once or when the desktop has answered, or doesn't where that says no.
    void set(bool shallStart);

private:
    void take(std::optional<bool> starts, bool wasWanted);

    AppSettings& settings_;
    std::unique_ptr<BackgroundPortal> portal_;
};

} // namespace varnic
