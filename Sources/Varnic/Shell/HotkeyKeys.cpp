#include "Varnic/Shell/HotkeyKeys.h"

#include "VarnicPlatform/Hotkey/KeyNames.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace varnic {

namespace {

struct Row {
    Qt::Key key;
    std::uint32_t symbol;
};

/// Qt's names of those keys whose symbols are not their ASCII characters.
constexpr std::array rows{
    Row{Qt::Key_Tab, 0xff09},
    Row{Qt::Key_Backtab, 0xff09},
    Row{Qt::Key_Return, 0xff0d},
    Row{Qt::Key_Pause, 0xff13},
    Row{Qt::Key_ScrollLock, 0xff14},
    Row{Qt::Key_Home, 0xff50},
    Row{Qt::Key_Left, 0xff51},
    Row{Qt::Key_Up, 0xff52},
    Row{Qt::Key_Right, 0xff53},
    Row{Qt::Key_Down, 0xff54},
    Row{Qt::Key_PageUp, 0xff55},
    Row{Qt::Key_PageDown, 0xff56},
    Row{Qt::Key_End, 0xff57},
    Row{Qt::Key_Print, 0xff61},
    Row{Qt::Key_SysReq, 0xff61},
    Row{Qt::Key_Insert, 0xff63},
    Row{Qt::Key_Menu, 0xff67},
    Row{Qt::Key_MediaPlay, 0x1008ff14},
    Row{Qt::Key_MediaTogglePlayPause, 0x1008ff14},
    Row{Qt::Key_MediaStop, 0x1008ff15},
    Row{Qt::Key_MediaRecord, 0x1008ff1c},
    Row{Qt::Key_MicMute, 0x1008ffb2},
};

std::optional<std::uint32_t> symbolOf(int key) {
    if (key >= Qt::Key_A && key <= Qt::Key_Z) {
        return static_cast<std::uint32_t>(key - Qt::Key_A + 'a');
    }
    if (key >= Qt::Key_F1 && key <= Qt::Key_F24) {
        constexpr std::uint32_t firstFunctionKey = 0xffbe;
        return static_cast<std::uint32_t>(key - Qt::Key_F1) + firstFunctionKey;
    }
    const auto* const found = std::ranges::find(rows, key, [](const Row& row) { return static_cast<int>(row.key); });
    const std::uint32_t symbol = found == rows.end() ? static_cast<std::uint32_t>(key) : found->symbol;
    return KeyNames::title(symbol).empty() ? std::nullopt : std::optional(symbol);
}

} // namespace

KeyCombination keys(HotkeyChoice choice) {
    switch (choice) {
    case HotkeyChoice::ctrlOptCmdR:
        return {.control = true, .alt = true, .super = true};
    case HotkeyChoice::optShiftR:
        return {.alt = true, .shift = true};
    case HotkeyChoice::ctrlShiftR:
        return {.control = true, .shift = true};
    }
    return {};
}

KeyCombination keys(const AppSettings& settings) {
    const auto own = KeyCombination::parse(settings.hotkeyKeys.value());
    return own && !own->problem() ? *own : keys(settings.hotkey.value());
}

std::optional<KeyCombination> pressed(int key, Qt::KeyboardModifiers modifiers) {
    const std::optional<std::uint32_t> symbol = symbolOf(key);
    if (!symbol) {
        return std::nullopt;
    }
    return KeyCombination{.control = modifiers.testFlag(Qt::ControlModifier),
                          .alt = modifiers.testFlag(Qt::AltModifier),
                          .shift = modifiers.testFlag(Qt::ShiftModifier),
                          .super = modifiers.testFlag(Qt::MetaModifier),
                          .key = *symbol};
}

} // namespace varnic
