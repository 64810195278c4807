#include "VarnicPlatform/Hotkey/X11Hotkey.h"

#include <fmt/format.h>
#include <sys/epoll.h>
#include <systemd/sd-event.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <utility>

namespace varnic {

namespace {

using Event = std::unique_ptr<xcb_generic_event_t, decltype(&std::free)>;

/// The top bit tells who sent the event.
constexpr std::uint8_t kindMask = 0x7f;

std::vector<xcb_window_t> roots(xcb_connection_t* x) {
    std::vector<xcb_window_t> windows;
    for (auto screen = xcb_setup_roots_iterator(xcb_get_setup(x)); screen.rem > 0; xcb_screen_next(&screen)) {
        windows.push_back(screen.data->root);
    }
    return windows;
}

} // namespace

/// The library's callback.
struct X11HotkeyEvents {
    static int onReadable(sd_event_source* /*source*/, int /*descriptor*/, std::uint32_t /*events*/, void* self) {
        static_cast<X11Hotkey*>(self)->readEvents();
        return 0;
    }
};

X11Hotkey::X11Hotkey(DesktopEvents& events, KeyCombination keys, Hotkey::Action perform, Report tell)
    : HotkeyBackend(keys, std::move(perform), std::move(tell)), events_(events) {}

void X11Hotkey::Unref::operator()(sd_event_source* source) const {
    // A source that is being handled would otherwise stay until then.
    sd_event_source_disable_unref(source);
}

void X11Hotkey::start() {
    if (connection_.get() == nullptr) {
        report({Hotkey::State::unavailable, "The X server can’t be reached for the hotkey."});
        return;
    }
    x_ = connection_.get();
    keys_ = std::make_unique<X11Keys>(x_);
    sd_event_source* source = nullptr;
    sd_event_add_io(events_.loop(), &source, xcb_get_file_descriptor(x_), EPOLLIN, X11HotkeyEvents::onReadable, this);
    source_.reset(source);
    grab();
    readEvents(); // What came in with the answers.
}

void X11Hotkey::grab() {
    ungrab();
    codes_ = keys_->keyCodes(combination);
    if (codes_.empty()) {
        report({Hotkey::State::unavailable, fmt::format("This keyboard has no key for {}.", combination.title())});
    } else if (grabKeys()) {
        report({Hotkey::State::registered, fmt::format("{} works in every program.", combination.title())});
    } else {
        // Some states of the locks may be free; a hotkey that works now and then is worse than none.
        ungrab();
        report({Hotkey::State::taken, fmt::format("{} is taken by another program.", combination.title())});
    }
}

void X11Hotkey::ungrab() {
    for (const xcb_window_t root : roots(x_)) {
        xcb_ungrab_key(x_, XCB_GRAB_ANY, root, XCB_MOD_MASK_ANY);
    }
    xcb_flush(x_);
}

bool X11Hotkey::grabKeys() {
    std::vector<xcb_void_cookie_t> requests;
    const auto states = keys_->modifierStates(combination);
    for (const xcb_window_t root : roots(x_)) {
        for (const xcb_keycode_t code : codes_) {
            for (const std::uint16_t state : states) {
                requests.push_back(
                    xcb_grab_key_checked(x_, 0, root, state, code, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
            }
        }
    }
    bool isOurs = true;
    for (const xcb_void_cookie_t request : requests) {
        const std::unique_ptr<xcb_generic_error_t, decltype(&std::free)> error(xcb_request_check(x_, request),
                                                                               std::free);
        isOurs = isOurs && !error;
    }
    return isOurs;
}

void X11Hotkey::readEvents() {
    if (connection_.get() == nullptr) {
        source_.reset();
        report({Hotkey::State::unavailable, "The X server is gone."});
        return;
    }
    int presses = 0;
    while (takeEvents(presses)) {
        grab(); // And then what came in with the answers, which gives no sign of its own.
    }
    const Hotkey::Action act = action; // Which may replace this object.
    for (; presses > 0; --presses) {
        act({});
    }
}

bool X11Hotkey::takeEvents(int& presses) {
    bool isLayoutNew = false;
    while (const Event event{xcb_poll_for_event(x_), std::free}) {
        if ((event->response_type & kindMask) == XCB_MAPPING_NOTIFY) {
            keys_->refresh(*reinterpret_cast<xcb_mapping_notify_event_t*>(event.get()));
            isLayoutNew = true;
        }
        presses += isPress(*event) ? 1 : 0;
    }
    return isLayoutNew;
}

bool X11Hotkey::isPress(const xcb_generic_event_t& event) {
    const std::uint8_t kind = event.response_type & kindMask;
    if (kind != XCB_KEY_PRESS && kind != XCB_KEY_RELEASE) {
        return false;
    }
    const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
    // As long as the combination is held, the other keys are sent here too.
    if (std::ranges::find(codes_, key.detail) == codes_.end()) {
        return false;
    }
    if (kind == XCB_KEY_RELEASE) {
        released_ = key.time;
        return false;
    }
    // A repetition is a release and a press at the same time.
    return key.time != released_;
}

} // namespace varnic
