#include "VarnicPlatform/Hotkey/X11Keys.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <set>
#include <span>
#include <string_view>
#include <utility>

namespace varnic {

namespace {

// Key symbols, by the X protocol's appendix.
constexpr xcb_keysym_t altLeft = 0xffe9;
constexpr xcb_keysym_t altRight = 0xffea;
constexpr xcb_keysym_t superLeft = 0xffeb;
constexpr xcb_keysym_t superRight = 0xffec;
constexpr xcb_keysym_t numLock = 0xff7f;
constexpr xcb_keysym_t scrollLock = 0xff14;

/// The letters in their places on Latin keyboards, and the kernel's number of the first key of each row (KEY_Q, KEY_A,
/// KEY_Z).
constexpr std::array<std::pair<std::string_view, int>, 3> letterRows{
    {{"qwertyuiop", 16}, {"asdfghjkl", 30}, {"zxcvbnm", 44}}};

/// X counts from here.
constexpr int firstKeyCode = 8;

std::vector<xcb_keycode_t> placeOf(xcb_keysym_t letter) {
    for (const auto& [letters, first] : letterRows) {
        const std::size_t at = letter < 0x80 ? letters.find(static_cast<char>(letter)) : std::string_view::npos;
        if (at != std::string_view::npos) {
            return {static_cast<xcb_keycode_t>(first + firstKeyCode + static_cast<int>(at))};
        }
    }
    return {};
}

template <typename Value>
using Owned = std::unique_ptr<Value, decltype(&std::free)>;

} // namespace

X11Keys::X11Keys(xcb_connection_t* connection) : connection_(connection), symbols_(xcb_key_symbols_alloc(connection)) {}

void X11Keys::refresh(xcb_mapping_notify_event_t& event) {
    xcb_refresh_keyboard_mapping(symbols_.get(), &event);
}

std::vector<xcb_keycode_t> X11Keys::keyCodesOf(xcb_keysym_t symbol) const {
    const Owned<xcb_keycode_t> found(xcb_key_symbols_get_keycode(symbols_.get(), symbol), std::free);
    std::vector<xcb_keycode_t> codes;
    for (const xcb_keycode_t* code = found.get(); code != nullptr && *code != XCB_NO_SYMBOL; ++code) {
        codes.push_back(*code);
    }
    return codes;
}

std::vector<xcb_keycode_t> X11Keys::keyCodes(const KeyCombination& combination) const {
    std::vector<xcb_keycode_t> codes = keyCodesOf(combination.key);
    return codes.empty() ? placeOf(combination.key) : codes;
}

X11Keys::Modifiers X11Keys::modifiers() const {
    Modifiers found;
    const auto cookie = xcb_get_modifier_mapping(connection_);
    const Owned<xcb_get_modifier_mapping_reply_t> reply(xcb_get_modifier_mapping_reply(connection_, cookie, nullptr),
                                                        std::free);
    if (!reply) {
        return found;
    }
    // A row of keys for each of the eight modifiers.
    const std::span keys(xcb_get_modifier_mapping_keycodes(reply.get()),
                         static_cast<std::size_t>(xcb_get_modifier_mapping_keycodes_length(reply.get())));
    const std::size_t width = reply->keycodes_per_modifier;
    const auto mask = [&](std::initializer_list<xcb_keysym_t> symbols, std::uint16_t otherwise) {
        for (const xcb_keysym_t symbol : symbols) {
            for (const xcb_keycode_t code : keyCodesOf(symbol)) {
                const auto at = std::ranges::find(keys, code);
                if (at != keys.end()) {
                    return static_cast<std::uint16_t>(1U << (static_cast<std::size_t>(at - keys.begin()) / width));
                }
            }
        }
        return otherwise;
    };
    found.alt = mask({altLeft, altRight}, found.alt);
    found.super = mask({superLeft, superRight}, found.super);
    found.numLock = mask({numLock}, found.numLock);
    found.scrollLock = mask({scrollLock}, found.scrollLock);
    return found;
}

std::vector<std::uint16_t> X11Keys::modifierStates(const KeyCombination& combination) const {
    const Modifiers found = modifiers();
    unsigned wanted = 0;
    for (const auto& [isWanted, mask] :
         {std::pair(combination.control, std::uint16_t{XCB_MOD_MASK_CONTROL}),
          std::pair(combination.shift, std::uint16_t{XCB_MOD_MASK_SHIFT}), std::pair(combination.alt, found.alt),
          std::pair(combination.super, found.super)}) {
        wanted |= isWanted ? mask : 0U;
    }
    std::set<std::uint16_t> states{static_cast<std::uint16_t>(wanted)};
    for (const std::uint16_t lock : {std::uint16_t{XCB_MOD_MASK_LOCK}, found.numLock, found.scrollLock}) {
        const std::set<std::uint16_t> before = states;
        for (const std::uint16_t state : before) {
            states.insert(static_cast<std::uint16_t>(state | lock));
        }
    }
    return {states.begin(), states.end()};
}

} // namespace varnic
