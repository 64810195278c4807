#include "VarnicPlatform/Desktop/FrontProgram.h"

#include "VarnicCore/Pipeline/LinuxPrograms.h"
#include "VarnicPlatform/Desktop/RunningPrograms.h"
#include "VarnicPlatform/Desktop/XConnection.h"

#include <sys/types.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace varnic::FrontProgram {

namespace {

/// A property's bytes; empty where the window hasn't got it. Window managers' properties have names (Extended Window
/// Manager Hints); X's own have fixed numbers.
std::string property(xcb_connection_t* x, xcb_window_t window, xcb_atom_t name, xcb_atom_t type) {
    /// In units of four bytes.
    constexpr std::uint32_t longest = 256;
    const auto cookie = xcb_get_property(x, 0, window, name, type, 0, longest);
    const XReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(x, cookie, nullptr), std::free);
    if (!reply) {
        return {};
    }
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

std::uint32_t number(const std::string& bytes) {
    std::uint32_t value = 0;
    if (bytes.size() >= sizeof value) {
        std::memcpy(&value, bytes.data(), sizeof value);
    }
    return value;
}

xcb_window_t activeWindow(xcb_connection_t* x) {
    const xcb_atom_t name = xAtom(x, "_NET_ACTIVE_WINDOW");
    for (auto screen = xcb_setup_roots_iterator(xcb_get_setup(x)); screen.rem > 0; xcb_screen_next(&screen)) {
        if (const auto window = number(property(x, screen.data->root, name, XCB_ATOM_WINDOW)); window != XCB_NONE) {
            return window;
        }
    }
    return XCB_NONE;
}

/// The class of a window is "instance\0Class\0".
std::vector<std::string> classNames(xcb_connection_t* x, xcb_window_t window) {
    const std::string bytes = property(x, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING);
    const auto end = std::min(bytes.find('\0'), bytes.size());
    const std::string behind = bytes.substr(std::min(end + 1, bytes.size()));
    return {behind.substr(0, behind.find('\0')), bytes.substr(0, end)};
}

} // namespace

std::optional<std::string> identifier() {
    const XConnection connection;
    xcb_connection_t* x = connection.get();
    if (x == nullptr) {
        return std::nullopt;
    }
    const xcb_window_t window = activeWindow(x);
    if (window == XCB_NONE) {
        return std::nullopt;
    }
    // The class first: a program in a sandbox knows itself by another process id.
    for (const std::string& name : classNames(x, window)) {
        if (const auto identifier = LinuxPrograms::bundleIdentifier(name)) {
            return std::string(*identifier);
        }
    }
    const auto process = static_cast<pid_t>(number(property(x, window, xAtom(x, "_NET_WM_PID"), XCB_ATOM_CARDINAL)));
    return process > 0 ? RunningPrograms::identifier(process) : std::nullopt;
}

} // namespace varnic::FrontProgram
