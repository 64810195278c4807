#pragma once

#include <cstdint>

struct xcb_connection_t;

/// What the X server's window managers are told of a window that floats over all others. Waits for the server's
/// answers. The connection's thread.
namespace varnic::FloatingWindow {

/// Tells, before each time that the window is shown, that it belongs in front of full-screen windows too and on every
/// workspace, and in no list of windows. A window manager forgets that when the window is hidden.
void prepare(xcb_connection_t* x, std::uint32_t window);

} // namespace varnic::FloatingWindow
