#pragma once

#include "VarnicPlatform/Desktop/DesktopEvents.h"
#include "VarnicPlatform/Hotkey/KeyCombination.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace varnic {

class HotkeyBackend;

/// A key combination that works whatever program is in front: grabbed from the X server, or asked of the desktop's
/// GlobalShortcuts portal in a Wayland session. One at most is registered at a time. The thread that dispatches the
/// events, which must outlive this.
class Hotkey {
public:
    enum class State {
        off,
        /// The desktop has been asked, and may be asking the user.
        waiting,
        registered,
        /// Another program has the combination.
        taken,
        /// This desktop offers none.
        unavailable
    };

    struct Status {
        State state = State::off;
        /// The user's sentence; empty when off.
        std::string message;

        bool operator==(const Status&) const = default;
    };

    /// The token, if there is one, gives the right to come to the front.
    using Action = std::function<void(const std::string& activationToken)>;

    /// What users bind to keys in their desktop's settings where it offers no hotkey.
    static constexpr const char* command = "varnic --toggle-recording";

    /// Who has the keys.
    enum class System { x11, portal };

    /// By WAYLAND_DISPLAY and DISPLAY: under Wayland a grab would see no keys of other programs.
    static System system();

    explicit Hotkey(DesktopEvents& events, System system = Hotkey::system());
    Hotkey(const Hotkey&) = delete;
    Hotkey& operator=(const Hotkey&) = delete;
    ~Hotkey();

    /// Takes the place of what was registered; nothing unregisters. `action` runs while events are dispatched.
    void registerCombination(std::optional<KeyCombination> combination, Action action);

    [[nodiscard]] const Status& status() const { return status_; }

    /// Called with each new status, not before `registerCombination` is.
    std::function<void(const Status&)> statusChanged = [](const Status&) {};

private:
    void setStatus(Status status);

    DesktopEvents& events_;
    System system_;
    Status status_;
    std::unique_ptr<HotkeyBackend> backend_;
};

} // namespace varnic
