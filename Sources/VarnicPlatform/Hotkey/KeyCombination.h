#pragma once

#include <string>

namespace varnic {

/// The R key with modifiers.
struct KeyCombination {
    bool control = false;
    bool alt = false;
    bool shift = false;
    bool super = false;

    bool operator==(const KeyCombination&) const = default;

    /// As users read it: "Ctrl+Alt+Super+R".
    [[nodiscard]] std::string title() const;

    /// As the desktop's portal reads it (shortcuts as freedesktop.org writes them): "CTRL+ALT+LOGO+r".
    [[nodiscard]] std::string portalTrigger() const;
};

} // namespace varnic
