#include "VarnicPlatform/Hotkey/KeyCombination.h"

namespace varnic {

std::string KeyCombination::title() const {
    return std::string(control ? "Ctrl+" : "") + (alt ? "Alt+" : "") + (shift ? "Shift+" : "") +
           (super ? "Super+" : "") + "R";
}

std::string KeyCombination::portalTrigger() const {
    return std::string(control ? "CTRL+" : "") + (alt ? "ALT+" : "") + (shift ? "SHIFT+" : "") +
           (super ? "LOGO+" : "") + "r";
}

} // namespace varnic
