#pragma once

#include <memory>

struct sd_event;
struct sd_bus;

namespace varnic {

/// Where the X server and D-Bus are listened to: one descriptor for the application's event loop to watch, however many
/// connections there are. One thread.
class DesktopEvents {
public:
    DesktopEvents();

    /// Becomes readable when there is something to dispatch.
    [[nodiscard]] int descriptor() const;

    /// Handles what has come in, without waiting, and sends what waits to be sent. Handlers run meanwhile; a call from
    /// one of them does nothing, since the outer call goes on.
    void dispatch();

    [[nodiscard]] sd_event* loop() const { return loop_.get(); }

private:
    struct Unref {
        void operator()(sd_event* loop) const;
    };

    std::unique_ptr<sd_event, Unref> loop_;
};

} // namespace varnic
