#pragma once

#include "VarnicPlatform/Desktop/BusConnection.h"

#include <systemd/sd-bus.h>

#include <functional>
#include <stdexcept>
#include <utility>

namespace varnic {

/// A service on the message bus that a test plays, since the real one needs a whole desktop.
class BusService {
public:
    /// Answers a method call; nothing for one that it doesn't know.
    using Answer = std::function<bool(sd_bus_message* call)>;

    BusService(DesktopEvents& events, const char* name, Answer answer)
        : connection_(events, BusConnection::Kind::session), answer_(std::move(answer)) {
        if (sd_bus_add_filter(connection_.get(), nullptr, onMessage, this) < 0 ||
            sd_bus_request_name(connection_.get(), name, 0) < 0) {
            throw std::runtime_error("the name is not free");
        }
        events.dispatch();
    }

    [[nodiscard]] sd_bus* bus() const { return connection_.get(); }

private:
    static int onMessage(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
        const bool isCall = sd_bus_message_is_method_call(message, nullptr, nullptr) > 0;
        return isCall && static_cast<BusService*>(self)->answer_(message) ? 1 : 0;
    }

    BusConnection connection_;
    Answer answer_;
};

} // namespace varnic
