#pragma once

namespace varnic {

/// Has assistive programs told of buttons, boxes and menu entries what Qt Quick leaves out: that one is disabled, that
/// one can be checked, and that a menu entry can be pressed. To be called once, before any window is made.
void prepareAccessibility();

} // namespace varnic
