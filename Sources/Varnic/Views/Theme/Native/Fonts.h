#pragma once

namespace varnic {

/// Names stand-ins for the program's fonts where one is not installed, and where emoji come from. To be called once,
/// when there is an application and before a window is shown.
void prepareFonts();

} // namespace varnic
