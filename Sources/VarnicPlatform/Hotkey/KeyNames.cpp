#include "VarnicPlatform/Hotkey/KeyNames.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace varnic {

namespace {

struct Row {
    std::uint32_t key;
    std::string_view title;
    std::string_view symbolName;
    bool isForTyping = false;
};

/// Those that are neither letters, digits nor function keys.
constexpr std::array rows{
    Row{0x20, "Space", "space", true},
    Row{0x2c, ",", "comma", true},
    Row{0x2d, "-", "minus", true},
    Row{0x2e, ".", "period", true},
    Row{0x2f, "/", "slash", true},
    Row{0xff09, "Tab", "Tab", true},
    Row{0xff0d, "Return", "Return", true},
    Row{0xff13, "Pause", "Pause"},
    Row{0xff14, "Scroll Lock", "Scroll_Lock"},
    Row{0xff50, "Home", "Home", true},
    Row{0xff51, "Left", "Left", true},
    Row{0xff52, "Up", "Up", true},
    Row{0xff53, "Right", "Right", true},
    Row{0xff54, "Down", "Down", true},
    Row{0xff55, "Page Up", "Prior", true},
    Row{0xff56, "Page Down", "Next", true},
    Row{0xff57, "End", "End", true},
    Row{0xff61, "Print", "Print"},
    Row{0xff63, "Insert", "Insert", true},
    Row{0xff67, "Menu", "Menu"},
    Row{0x1008ff14, "Media Play", "XF86AudioPlay"},
    Row{0x1008ff15, "Media Stop", "XF86AudioStop"},
    Row{0x1008ff1c, "Media Record", "XF86AudioRecord"},
    Row{0x1008ffb2, "Microphone Mute", "XF86AudioMicMute"},
};

constexpr std::uint32_t firstFunctionKey = 0xffbe;
constexpr std::uint32_t functionKeys = 24;

bool isLetter(std::uint32_t key) {
    return key >= 'a' && key <= 'z';
}

bool isDigit(std::uint32_t key) {
    return key >= '0' && key <= '9';
}

const Row* rowOf(std::uint32_t key) {
    const auto* const found = std::ranges::find(rows, key, &Row::key);
    return found == rows.end() ? nullptr : found;
}

} // namespace

std::string KeyNames::title(std::uint32_t key) {
    if (isLetter(key)) {
        return std::string(1, static_cast<char>(key - 'a' + 'A'));
    }
    const Row* row = rowOf(key);
    return row == nullptr ? symbolName(key) : std::string(row->title);
}

std::string KeyNames::symbolName(std::uint32_t key) {
    if (isLetter(key) || isDigit(key)) {
        return std::string(1, static_cast<char>(key));
    }
    if (KeyNames::isFunctionKey(key)) {
        return fmt::format("F{}", key - firstFunctionKey + 1);
    }
    const Row* row = rowOf(key);
    return row == nullptr ? "" : std::string(row->symbolName);
}

std::optional<std::uint32_t> KeyNames::fromTitle(std::string_view title) {
    const auto* const found = std::ranges::find(rows, title, &Row::title);
    if (found != rows.end()) {
        return found->key;
    }
    for (std::uint32_t key = '0'; key <= 'z'; ++key) {
        if (KeyNames::title(key) == title && !title.empty()) {
            return key;
        }
    }
    for (std::uint32_t key = firstFunctionKey; key < firstFunctionKey + functionKeys; ++key) {
        if (KeyNames::title(key) == title) {
            return key;
        }
    }
    return std::nullopt;
}

bool KeyNames::isFunctionKey(std::uint32_t key) {
    return key >= firstFunctionKey && key < firstFunctionKey + functionKeys;
}

bool KeyNames::isForTyping(std::uint32_t key) {
    const Row* row = rowOf(key);
    return isLetter(key) || isDigit(key) || (row != nullptr && row->isForTyping);
}

} // namespace varnic
