#pragma once

#include <xcb/xcb.h>

#include <memory>

namespace varnic {

/// A connection of our own to the X server of DISPLAY. One thread at a time.
class XConnection {
public:
    XConnection() : connection_(xcb_connect(nullptr, nullptr)) {}

    /// Null where the server can't be reached, or no longer.
    [[nodiscard]] xcb_connection_t* get() const {
        return xcb_connection_has_error(connection_.get()) == 0 ? connection_.get() : nullptr;
    }

private:
    struct Disconnect {
        // A failed connection is an object too.
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
};

} // namespace varnic
