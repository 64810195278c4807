#include "VarnicPlatform/Hotkey/PortalHotkey.h"

#include "VarnicPlatform/Desktop/PortalMessages.h"

#include <fmt/format.h>
#include <systemd/sd-bus.h>

#include <cstdint>
#include <string_view>
#include <utility>

namespace varnic {

namespace {

constexpr const char* service = "org.freedesktop.portal.Desktop";
constexpr const char* path = "/org/freedesktop/portal/desktop";
constexpr const char* interface = "org.freedesktop.portal.GlobalShortcuts";
/// Under which the desktop keeps what the user chose.
constexpr const char* shortcutID = "toggle-recording";

constexpr const char* unavailable = "This desktop offers programs no global hotkey. In its keyboard settings, set a "
                                    "shortcut for the command “varnic --toggle-recording”.";

} // namespace

/// The library's callbacks.
struct PortalSignals {
    static PortalHotkey& of(void* self) { return *static_cast<PortalHotkey*>(self); }

    static int onReply(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
        if (sd_bus_message_is_method_error(message, nullptr) > 0) {
            of(self).giveUp();
        }
        return 0;
    }

    static int onResponse(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
        of(self).onResponse(message);
        return 0;
    }

    static int onActivated(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
        of(self).onActivated(message);
        return 0;
    }

    static int onClosed(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
        of(self).onClosed(sd_bus_message_get_path(message));
        return 0;
    }

    static int onOwnerChanged(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
        const char* name = nullptr;
        const char* before = nullptr;
        const char* now = nullptr;
        if (sd_bus_message_read(message, "sss", &name, &before, &now) > 0) {
            of(self).onOwnerChanged(*now != '\0');
        }
        return 0;
    }
};

PortalHotkey::PortalHotkey(DesktopEvents& events, KeyCombination keys, Hotkey::Action perform, Report tell)
    : HotkeyBackend(keys, std::move(perform), std::move(tell)), bus_(events, BusConnection::Kind::session) {}

void PortalHotkey::start() {
    if (!bus_.isOpen()) {
        giveUp();
        return;
    }
    const auto match = [this](const char* place, const char* from, const char* signal,
                              sd_bus_message_handler_t handle) {
        sd_bus_match_signal_async(bus_.get(), nullptr, service, place, from, signal, handle, nullptr, this);
    };
    match(nullptr, "org.freedesktop.portal.Request", "Response", PortalSignals::onResponse);
    match(nullptr, "org.freedesktop.portal.Session", "Closed", PortalSignals::onClosed);
    match(path, interface, "Activated", PortalSignals::onActivated);
    sd_bus_add_match_async(bus_.get(), nullptr,
                           fmt::format("type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
                                       "member='NameOwnerChanged',arg0='{}'",
                                       service)
                               .c_str(),
                           PortalSignals::onOwnerChanged, nullptr, this);
    createSession();
}

void PortalHotkey::createSession() {
    step_ = Step::creatingSession;
    report({Hotkey::State::waiting, "The desktop is asked for the hotkey."});
    // A desktop that lets programs say who they are files the shortcut under their name; others don't know the call.
    sd_bus_call_method_async(bus_.get(), nullptr, service, path, "org.freedesktop.host.portal.Registry", "Register",
                             nullptr, nullptr, "sa{sv}", "app.brevin.Varnic", 0);
    token_ = nextToken();
    const int sent = sd_bus_call_method_async(bus_.get(), nullptr, service, path, interface, "CreateSession",
                                              PortalSignals::onReply, this, "a{sv}", 2, "handle_token", "s",
                                              token_.c_str(), "session_handle_token", "s", nextToken().c_str());
    if (sent < 0) {
        giveUp();
    }
}

void PortalHotkey::bind() {
    step_ = Step::binding;
    token_ = nextToken();
    const int sent = sd_bus_call_method_async(
        bus_.get(), nullptr, service, path, interface, "BindShortcuts", PortalSignals::onReply, this,
        "oa(sa{sv})sa{sv}", session_.c_str(), 1, shortcutID, 2, "description", "s", "Start or stop recording a call",
        "preferred_trigger", "s", combination.portalTrigger().c_str(), "", 1, "handle_token", "s", token_.c_str());
    if (sent < 0) {
        giveUp();
    }
}

void PortalHotkey::onResponse(sd_bus_message* message) {
    const std::string_view place = sd_bus_message_get_path(message);
    if (!place.ends_with("/" + token_)) {
        return;
    }
    const auto response = PortalMessages::readResponse(message);
    if (!response || !response->isGranted) {
        step_ = Step::off;
        report({Hotkey::State::unavailable, "The desktop hasn’t granted the hotkey; its keyboard settings may."});
        return;
    }
    if (step_ == Step::creatingSession) {
        const auto session = response->texts.find("session_handle");
        if (session == response->texts.end() || sd_bus_object_path_is_valid(session->second.c_str()) == 0) {
            giveUp();
            return;
        }
        session_ = session->second;
        bind();
    } else if (step_ == Step::binding) {
        step_ = Step::bound;
        report({Hotkey::State::registered,
                response->trigger.empty()
                    ? "The desktop’s keyboard settings tell which keys start and stop a recording."
                    : fmt::format("The desktop has “{}” for it.", response->trigger)});
    }
}

void PortalHotkey::onActivated(sd_bus_message* message) {
    const char* session = nullptr;
    const char* shortcut = nullptr;
    std::uint64_t time = 0;
    if (sd_bus_message_read(message, "ost", &session, &shortcut, &time) <= 0 || session_ != session) {
        return;
    }
    std::string token;
    if (const auto texts = PortalMessages::readTexts(message); texts && texts->contains("activation_token")) {
        token = texts->at("activation_token");
    }
    const Hotkey::Action act = action; // Which may replace this object.
    act(token);
}

void PortalHotkey::onClosed(const std::string& session) {
    if (!session_.empty() && session == session_) {
        session_.clear();
        step_ = Step::off;
        report({Hotkey::State::unavailable, "The desktop has taken the hotkey back."});
    }
}

void PortalHotkey::onOwnerChanged(bool isThere) {
    session_.clear();
    // The portal has been started for the first time, or anew, or is gone and can be started by a call.
    if (isThere ? step_ != Step::creatingSession : step_ == Step::bound) {
        createSession();
    }
}

void PortalHotkey::giveUp() {
    step_ = Step::off;
    report({Hotkey::State::unavailable, unavailable});
}

std::string PortalHotkey::nextToken() {
    static int count = 0;
    return fmt::format("varnic{}", ++count);
}

} // namespace varnic
