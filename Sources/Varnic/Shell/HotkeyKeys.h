#pragma once

#include "Varnic/AppModel/AppSettings.h"
#include "VarnicPlatform/Hotkey/KeyCombination.h"

#include <Qt>

#include <optional>

namespace varnic {

/// The keys of a choice here. Ctrl takes Command's place and Alt Option's; where Ctrl is in the choice already, the
/// Super key stands for Command. `KeyCombination::title` is what the user sees.
KeyCombination keys(HotkeyChoice choice);

/// The keys of the settings: the user's own or, where there are none that can be used, those of the choice.
KeyCombination keys(const AppSettings& settings);

/// What was pressed, as Qt tells it (Qt::Key and Qt::KeyboardModifiers); nothing for a modifier alone and for keys that
/// can't be a hotkey's. See KeyCombination::problem for whether it can be used.
std::optional<KeyCombination> pressed(int key, Qt::KeyboardModifiers modifiers);

} // namespace varnic
