#pragma once

#include "VarnicPlatform/Hotkey/KeyCombination.h"

#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace varnic {

/// What the keyboard's present layout makes of a combination.
class X11Keys {
public:
    explicit X11Keys(xcb_connection_t* connection);

    /// Takes over a change of the layout.
    void refresh(xcb_mapping_notify_event_t& event);

    /// The keys that give the combination's symbol. Where the layout has no such letter, as Cyrillic ones have none,
    /// the key in its place on a Latin keyboard. None for another symbol that the keyboard hasn't got.
    [[nodiscard]] std::vector<xcb_keycode_t> keyCodes(const KeyCombination& combination) const;

    /// The combination's modifiers with each combination of locks, since a lock counts as a modifier too.
    [[nodiscard]] std::vector<std::uint16_t> modifierStates(const KeyCombination& combination) const;

private:
    struct Free {
        void operator()(xcb_key_symbols_t* symbols) const { xcb_key_symbols_free(symbols); }
    };

    struct Modifiers {
        std::uint16_t alt = XCB_MOD_MASK_1;
        std::uint16_t super = XCB_MOD_MASK_4;
        std::uint16_t numLock = XCB_MOD_MASK_2;
        std::uint16_t scrollLock = 0;
    };

    [[nodiscard]] std::vector<xcb_keycode_t> keyCodesOf(xcb_keysym_t symbol) const;
    [[nodiscard]] Modifiers modifiers() const;

    xcb_connection_t* connection_;
    std::unique_ptr<xcb_key_symbols_t, Free> symbols_;
};

} // namespace varnic
