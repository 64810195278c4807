#pragma once

#include "VarnicCore/Pipeline/SessionState.h"

#include <string>

namespace varnic {

/// What stands in the desktop's tray or panel.
struct MenuBarLabel {
    /// The red dot stands before the text: an oval inset by 2 points in a square of 14.
    bool showsDot = false;
    /// How long the recording is so far; empty while none runs.
    std::string text;
    /// The name of the icon to show instead; empty while a recording runs.
    std::string symbol;

    bool operator==(const MenuBarLabel&) const = default;

    /// `elapsed` in seconds.
    static MenuBarLabel of(const SessionState& state, double elapsed);
};

/// The dot's colour, 0xRRGGBB, in light and dark alike since panels have their own ground.
inline constexpr unsigned menuBarDotColour = 0xE5483B;

} // namespace varnic
