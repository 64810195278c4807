#pragma once

#include "VarnicPlatform/Desktop/BusConnection.h"
#include "VarnicPlatform/Hotkey/HotkeyBackend.h"

#include <string>

struct sd_bus_message;

namespace varnic {

/// A shortcut of the desktop's, by its GlobalShortcuts portal: the combination is what we propose, and the user decides
/// in the desktop's own dialog and settings.
class PortalHotkey final : public HotkeyBackend {
public:
    PortalHotkey(DesktopEvents& events, KeyCombination keys, Hotkey::Action perform, Report tell);

    void start() override;

private:
    friend struct PortalSignals;

    enum class Step { off, creatingSession, binding, bound };

    void createSession();
    void bind();
    void onResponse(sd_bus_message* message);
    void onActivated(sd_bus_message* message);
    void onClosed(const std::string& session);
    void onOwnerChanged(bool isThere);
    /// There is no portal, or it has none of these shortcuts.
    void giveUp();
    [[nodiscard]] static std::string nextToken();

    BusConnection bus_;
    Step step_ = Step::off;
    /// Of the request whose response is awaited: the last part of its path.
    std::string token_;
    std::string session_;
};

} // namespace varnic
