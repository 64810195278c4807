#include "VarnicPlatform/Desktop/BusConnection.h"

#include <systemd/sd-bus.h>
#include <systemd/sd-event.h>

namespace varnic {

BusConnection::BusConnection(const DesktopEvents& events, Kind kind) {
    sd_bus* bus = nullptr;
    const int opened = kind == Kind::session ? sd_bus_open_user(&bus) : sd_bus_open_system(&bus);
    if (opened < 0) {
        return;
    }
    bus_.reset(bus);
    if (sd_bus_attach_event(bus, events.loop(), SD_EVENT_PRIORITY_NORMAL) < 0) {
        bus_.reset();
    }
}

void BusConnection::Close::operator()(sd_bus* bus) const {
    // Not flushed, which could wait for a bus that doesn't answer; whoever is left learns of it by the lost connection.
    sd_bus_close_unref(bus);
}

} // namespace varnic
