#pragma once

#include "VarnicPlatform/Desktop/DesktopEvents.h"

#include <poll.h>

#include <chrono>

namespace varnic {

/// Serves the events until the condition holds; false where it does not within half a minute.
template <typename Condition>
bool dispatchUntil(DesktopEvents& events, Condition condition) {
    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + std::chrono::seconds(30);
    events.dispatch();
    while (!condition()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        pollfd readable{.fd = events.descriptor(), .events = POLLIN, .revents = 0};
        if (left <= 0 || ::poll(&readable, 1, static_cast<int>(left)) == 0) {
            return false;
        }
        events.dispatch();
    }
    return true;
}

} // namespace varnic
