#include "VarnicPlatform/Desktop/FloatingWindow.h"

#include "VarnicPlatform/Desktop/XConnection.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <string_view>
#include <vector>

namespace varnic::FloatingWindow {

namespace {

void set(xcb_connection_t* x, xcb_window_t window, const char* property, xcb_atom_t type,
         const std::vector<std::uint32_t>& values) {
    constexpr std::uint8_t bits = 32;
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, window, xAtom(x, property), type, bits,
                        static_cast<std::uint32_t>(values.size()), values.data());
}

std::vector<std::uint32_t> atoms(xcb_connection_t* x, std::initializer_list<std::string_view> names) {
    std::vector<std::uint32_t> numbers;
    std::ranges::transform(names, std::back_inserter(numbers), [x](std::string_view name) { return xAtom(x, name); });
    return numbers;
}

} // namespace

void prepare(xcb_connection_t* x, std::uint32_t window) {
    // KDE's windows of the common kind lie below one that fills the screen.
    constexpr const char* kdesOverFullScreen = "_KDE_NET_WM_WINDOW_TYPE_CRITICAL_NOTIFICATION";
    constexpr std::uint32_t everyWorkspace = 0xFFFFFFFF;
    set(x, window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM,
        atoms(x, {kdesOverFullScreen, "_NET_WM_WINDOW_TYPE_NOTIFICATION", "_NET_WM_WINDOW_TYPE_NORMAL"}));
    set(x, window, "_NET_WM_STATE", XCB_ATOM_ATOM,
        atoms(x, {"_NET_WM_STATE_ABOVE", "_NET_WM_STATE_STICKY", "_NET_WM_STATE_SKIP_TASKBAR",
                  "_NET_WM_STATE_SKIP_PAGER"}));
    set(x, window, "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL, {everyWorkspace});
}

} // namespace varnic::FloatingWindow
