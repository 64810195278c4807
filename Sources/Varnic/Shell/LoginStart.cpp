#include "Varnic/Shell/LoginStart.h"

#include "Varnic/AppModel/AppSettings.h"
#include "VarnicPlatform/Desktop/Autostart.h"

namespace varnic {

LoginStart::LoginStart(DesktopEvents& events, AppSettings& settings, bool isSandboxed) : settings_(settings) {
    if (isSandboxed) {
        portal_ = std::make_unique<BackgroundPortal>(events);
    }
    look();
}

void LoginStart::look() {
    isOn = portal_ ? settings_.startsAtLogin.value() : Autostart::isOn();
}

void LoginStart::set(bool shallStart) {
    if (portal_) {
        portal_->request(shallStart, [this, shallStart](std::optional<bool> starts) { take(starts, shallStart); });
        return;
    }
    try {
        Autostart::set(shallStart, Autostart::runningProgram());
        problem = std::string();
    } catch (const Autostart::Error& error) {
        problem = std::string(error.what());
    }
    look();
}

void LoginStart::take(std::optional<bool> starts, bool wasWanted) {
    if (starts) {
        settings_.startsAtLogin = *starts;
    }
    problem = starts == wasWanted
                  ? std::string()
                  : std::string("The desktop doesn’t let Varnic change the start at login; its settings "
                                "for applications may.");
    look();
}

} // namespace varnic
