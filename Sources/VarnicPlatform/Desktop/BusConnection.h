#pragma once

#include "VarnicPlatform/Desktop/DesktopEvents.h"

#include <memory>
#include <string>

namespace varnic {

/// A connection to a message bus that is served by the desktop's events. Connecting never waits; what is sent before it
/// is done is kept until then. The thread that dispatches the events.
class BusConnection {
public:
    enum class Kind { session, system };

    /// A closed connection where there is no such bus.
    BusConnection(const DesktopEvents& events, Kind kind);

    [[nodiscard]] bool isOpen() const { return bus_ != nullptr; }

    /// Null when closed; calls on null fail without harm.
    [[nodiscard]] sd_bus* get() const { return bus_.get(); }

private:
    struct Close {
        void operator()(sd_bus* bus) const;
    };

    std::unique_ptr<sd_bus, Close> bus_;
};

} // namespace varnic
