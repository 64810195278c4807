#include "VarnicPlatform/Hotkey/Hotkey.h"

#include "VarnicPlatform/Hotkey/PortalHotkey.h"
#include "VarnicPlatform/Hotkey/X11Hotkey.h"

#include <cstdlib>
#include <utility>

namespace varnic {

namespace {

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

std::unique_ptr<HotkeyBackend> makeBackend(Hotkey::System system, DesktopEvents& events, KeyCombination combination,
                                           Hotkey::Action action, HotkeyBackend::Report report) {
    if (system == Hotkey::System::x11) {
        return std::make_unique<X11Hotkey>(events, combination, std::move(action), std::move(report));
    }
    return std::make_unique<PortalHotkey>(events, combination, std::move(action), std::move(report));
}

} // namespace

Hotkey::System Hotkey::system() {
    return isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY") ? System::x11 : System::portal;
}

Hotkey::Hotkey(DesktopEvents& events, System system) : events_(events), system_(system) {}

Hotkey::~Hotkey() = default;

void Hotkey::registerCombination(std::optional<KeyCombination> combination, Action action) {
    backend_.reset();
    if (!combination) {
        setStatus({});
        return;
    }
    backend_ = makeBackend(system_, events_, *combination, std::move(action),
                           [this](Status status) { setStatus(std::move(status)); });
    backend_->start();
    events_.dispatch();
}

void Hotkey::setStatus(Status status) {
    if (status == status_) {
        return;
    }
    status_ = std::move(status);
    statusChanged(status_);
}

} // namespace varnic
