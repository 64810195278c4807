#include "VarnicPlatform/Desktop/BackgroundPortal.h"

#include "VarnicPlatform/Desktop/PortalMessages.h"

#include <fmt/format.h>
#include <systemd/sd-bus.h>

#include <filesystem>
#include <string_view>
#include <utility>

namespace varnic {

/// The library's callbacks.
struct BackgroundPortalReplies {
    static int onReply(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
        if (sd_bus_message_is_method_error(message, nullptr) > 0) {
            static_cast<BackgroundPortal*>(self)->take(std::nullopt);
        }
        return 0;
    }

    static int onResponse(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
        static_cast<BackgroundPortal*>(self)->onResponse(message);
        return 0;
    }
};

bool BackgroundPortal::isNeeded() {
    std::error_code ignored;
    return std::filesystem::exists("/.flatpak-info", ignored);
}

BackgroundPortal::BackgroundPortal(DesktopEvents& events)
    : events_(events), bus_(events, BusConnection::Kind::session) {
    sd_bus_match_signal_async(bus_.get(), nullptr, "org.freedesktop.portal.Desktop", nullptr,
                              "org.freedesktop.portal.Request", "Response", BackgroundPortalReplies::onResponse,
                              nullptr, this);
    events_.dispatch();
}

void BackgroundPortal::request(bool startsAtLogin, Answer answer) {
    answer_ = std::move(answer);
    token_ = fmt::format("varnicbackground{}", ++requests_);
    const int sent = sd_bus_call_method_async(
        bus_.get(), nullptr, "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
        "org.freedesktop.portal.Background", "RequestBackground", BackgroundPortalReplies::onReply, this, "sa{sv}", "",
        5, "handle_token", "s", token_.c_str(), "reason", "s", "Wait in the background for a call to record",
        "autostart", "b", startsAtLogin ? 1 : 0, "commandline", "as", 2, "varnic", "--background", "dbus-activatable",
        "b", 0);
    if (sent < 0) {
        take(std::nullopt);
    }
    events_.dispatch();
}

void BackgroundPortal::onResponse(sd_bus_message* message) {
    const std::string_view place = sd_bus_message_get_path(message);
    if (token_.empty() || !place.ends_with("/" + token_)) {
        return;
    }
    const auto response = PortalMessages::readResponse(message);
    if (!response || !response->isGranted || !response->flags.contains("autostart")) {
        take(std::nullopt);
        return;
    }
    take(response->flags.at("autostart"));
}

void BackgroundPortal::take(std::optional<bool> startsAtLogin) {
    token_.clear();
    if (const Answer answer = std::exchange(answer_, nullptr)) {
        answer(startsAtLogin);
    }
}

} // namespace varnic
