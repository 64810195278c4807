#pragma once

namespace varnic {

/// Adds the program's own fonts, and names stand-ins for fonts that are not installed, and where emoji come from. To be
/// called once, when there is an application and before a window is shown.
void prepareFonts();

} // namespace varnic
