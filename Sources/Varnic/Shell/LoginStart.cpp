#include "Varnic/Shell/LoginStart.h"

#include "VarnicPlatform/Desktop/Autostart.h"

namespace varnic {

LoginStart::LoginStart(DesktopEvents& events, QObject* parent) : QObject(parent), events_(events) {
    look();
}

void LoginStart::look() {
    isOn = Autostart::isOn();
}

void LoginStart::set(bool shallStart) {
    try {
        Autostart::set(shallStart, Autostart::runningProgram());
        problem = std::string();
    } catch (const Autostart::Error& error) {
        problem = std::string(error.what());
    }
    look();
}

} // namespace varnic
