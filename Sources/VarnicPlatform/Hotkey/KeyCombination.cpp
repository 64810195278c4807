#include "VarnicPlatform/Hotkey/KeyCombination.h"

#include "VarnicPlatform/Hotkey/KeyNames.h"

#include <array>
#include <utility>

namespace varnic {

namespace {

struct Modifier {
    bool KeyCombination::* isHeld;
    std::string_view title;
    std::string_view portal;
};

/// In the order of writing.
constexpr std::array modifiers{
    Modifier{&KeyCombination::control, "Ctrl+", "CTRL+"},
    Modifier{&KeyCombination::alt, "Alt+", "ALT+"},
    Modifier{&KeyCombination::shift, "Shift+", "SHIFT+"},
    Modifier{&KeyCombination::super, "Super+", "LOGO+"},
};

} // namespace

std::optional<KeyCombination> KeyCombination::parse(std::string_view title) {
    KeyCombination combination;
    for (const Modifier& modifier : modifiers) {
        if (title.starts_with(modifier.title)) {
            combination.*modifier.isHeld = true;
            title.remove_prefix(modifier.title.size());
        }
    }
    const auto key = KeyNames::fromTitle(title);
    if (!key) {
        return std::nullopt;
    }
    combination.key = *key;
    return combination;
}

std::optional<std::string> KeyCombination::problem() const {
    if (KeyNames::title(key).empty()) {
        return "This key can’t be used in a shortcut.";
    }
    if (KeyNames::isForTyping(key) && !control && !alt && !super) {
        return "Hold Ctrl, Alt or Super with it, or else it would be missing when you type.";
    }
    if (control && alt && KeyNames::isFunctionKey(key)) {
        return "Ctrl and Alt with this key take you to another console.";
    }
    return std::nullopt;
}

std::string KeyCombination::title() const {
    std::string text;
    for (const Modifier& modifier : modifiers) {
        text += this->*modifier.isHeld ? modifier.title : "";
    }
    return text + KeyNames::title(key);
}

std::string KeyCombination::portalTrigger() const {
    std::string text;
    for (const Modifier& modifier : modifiers) {
        text += this->*modifier.isHeld ? modifier.portal : "";
    }
    return text + KeyNames::symbolName(key);
}

} // namespace varnic
