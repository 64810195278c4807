#pragma once

#include "VarnicPlatform/Desktop/XConnection.h"
#include "VarnicPlatform/Hotkey/HotkeyBackend.h"
#include "VarnicPlatform/Hotkey/X11Keys.h"

#include <vector>

struct sd_event_source;

namespace varnic {

/// A key combination that the X server gives to this program alone.
class X11Hotkey final : public HotkeyBackend {
public:
    X11Hotkey(DesktopEvents& events, KeyCombination keys, Hotkey::Action perform, Report tell);

    void start() override;

private:
    friend struct X11HotkeyEvents;

    struct Unref {
        void operator()(sd_event_source* source) const;
    };

    void grab();
    void ungrab();
    /// Whether the server gives us all states of all keys.
    bool grabKeys();
    void readEvents();
    /// Counts the presses among what has come in. Whether the layout has changed.
    bool takeEvents(int& presses);
    /// Whether the event is the beginning of a press, and not the repetition while the key is held.
    bool isPress(const xcb_generic_event_t& event);

    DesktopEvents& events_;
    XConnection connection_;
    /// Of `connection_`, also when the server is gone, which calls bear.
    xcb_connection_t* x_ = nullptr;
    std::unique_ptr<X11Keys> keys_;
    std::unique_ptr<sd_event_source, Unref> source_;
    std::vector<xcb_keycode_t> codes_;
    /// The server's time of the last release, in milliseconds.
    xcb_timestamp_t released_ = 0;
};

} // namespace varnic
