#pragma once

#include "Varnic/AppModel/AppSettings.h"
#include "VarnicPlatform/Hotkey/KeyCombination.h"

namespace varnic {

/// The keys of a choice here. Ctrl takes Command's place and Alt Option's; where Ctrl is in the choice already, the
/// Super key stands for Command. `KeyCombination::title` is what the user sees.
KeyCombination keys(HotkeyChoice choice);

} // namespace varnic
