#pragma once

#include "VarnicPlatform/Desktop/BusConnection.h"
#include "VarnicPlatform/Desktop/DesktopEvents.h"

#include <functional>
#include <optional>
#include <string>

struct sd_bus_message;

namespace varnic {

/// Asks the desktop's Background portal to start a program in a sandbox at login, where it can make no autostart entry
/// that the desktop reads. The thread that dispatches the events, which must outlive this.
class BackgroundPortal {
public:
    /// Whether this program runs in a sandbox that has the portal.
    static bool isNeeded();

    /// Called with whether the program starts at login now; with nothing where there is no portal, or the user said no.
    using Answer = std::function<void(std::optional<bool> startsAtLogin)>;

    explicit BackgroundPortal(DesktopEvents& events);

    /// Asks the desktop, which may ask the user. An answer that is still awaited is dropped.
    void request(bool startsAtLogin, Answer answer);

private:
    friend struct BackgroundPortalReplies;

    void take(std::optional<bool> startsAtLogin);
    void onResponse(sd_bus_message* message);

    DesktopEvents& events_;
    BusConnection bus_;
    Answer answer_;
    /// Of the request whose response is awaited: the last part of its path.
    std::string token_;
    int requests_ = 0;
};

} // namespace varnic
