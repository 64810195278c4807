#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace varnic {

/// A key with modifiers.
struct KeyCombination {
    bool control = false;
    bool alt = false;
    bool shift = false;
    bool super = false;
    /// The key's symbol, by the X protocol's appendix: of a letter the small one, whatever the modifiers.
    std::uint32_t key = 'r';

    bool operator==(const KeyCombination&) const = default;

    /// Reads what `title` writes; nothing for any other text, nor for a key that can't be a hotkey's.
    static std::optional<KeyCombination> parse(std::string_view title);

    /// Why the combination would be in the way of what users type, their sentence; nothing where it is none: a letter
    /// or a digit with Ctrl, Alt or Super, or a key of no use for typing, such as F9 or Pause.
    [[nodiscard]] std::optional<std::string> problem() const;

    /// As users read it: "Ctrl+Alt+Super+R".
    [[nodiscard]] std::string title() const;

    /// As the desktop's portal reads it (shortcuts as freedesktop.org writes them): "CTRL+ALT+LOGO+r".
    [[nodiscard]] std::string portalTrigger() const;
};

} // namespace varnic
