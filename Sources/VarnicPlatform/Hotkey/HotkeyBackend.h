#pragma once

#include "VarnicPlatform/Hotkey/Hotkey.h"

#include <functional>
#include <utility>

namespace varnic {

/// What a Hotkey has one of while a combination is registered. It tells of each new status through `report`, never
/// before it is made, and lets the combination go when it is destroyed.
class HotkeyBackend {
public:
    using Report = std::function<void(Hotkey::Status)>;

    HotkeyBackend(KeyCombination keys, Hotkey::Action perform, Report tell)
        : combination(keys), action(std::move(perform)), report(std::move(tell)) {}

    HotkeyBackend(const HotkeyBackend&) = delete;
    HotkeyBackend& operator=(const HotkeyBackend&) = delete;
    virtual ~HotkeyBackend() = default;

    /// Registers the combination.
    virtual void start() = 0;

protected:
    const KeyCombination combination;
    const Hotkey::Action action;
    const Report report;
};

} // namespace varnic
