#pragma once

#include <string>
#include <vector>

namespace varnic {

/// Adds the program's own fonts, and names stand-ins for fonts that are not installed, and where emoji come from. To be
/// called once, when there is an application and before a window is shown.
void prepareFonts();

/// The Debian packages of the fonts that screen and exports are meant for and that are not installed. Waits until the
/// installed fonts are listed, which may take a moment.
std::vector<std::string> missingFontPackages();

} // namespace varnic
