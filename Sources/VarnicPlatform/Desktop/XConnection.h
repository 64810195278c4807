#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace varnic {

/// An answer of the X server, which its receiver frees.
template <typename Value>
using XReply = std::unique_ptr<Value, decltype(&std::free)>;

/// The number of a name on the connection's server. Waits for the answer; XCB_ATOM_NONE where there is none.
inline xcb_atom_t xAtom(xcb_connection_t* x, std::string_view name) {
    const auto cookie = xcb_intern_atom(x, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const XReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(x, cookie, nullptr), std::free);
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

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
