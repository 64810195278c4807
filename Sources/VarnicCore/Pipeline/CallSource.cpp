#include "VarnicCore/Pipeline/CallSource.h"

#include <algorithm>
#include <array>

namespace varnic::CallSource {

namespace {

struct App {
    std::string_view identifier;
    std::string_view label;
};

/// In the order in which they win when several run.
constexpr std::array<App, 10> apps{{
    {"us.zoom.xos", "Zoom"},
    {"com.microsoft.teams2", "Microsoft Teams"},
    {"com.microsoft.teams", "Microsoft Teams"},
    {"com.apple.FaceTime", "FaceTime"},
    {"com.cisco.webexmeetingsapp", "Webex"},
    {"Cisco-Systems.Spark", "Webex"},
    {"com.tinyspeck.slackmacgap", "Slack huddle"},
    {"com.hnc.Discord", "Discord"},
    {"net.whatsapp.WhatsApp", "WhatsApp"},
    {"com.skype.skype", "Skype"},
}};

constexpr std::array<std::string_view, 6> browsers{"com.google.Chrome",          "com.apple.Safari",
                                                   "company.thebrowser.Browser", "org.mozilla.firefox",
                                                   "com.microsoft.edgemac",      "com.brave.Browser"};

} // namespace

std::string_view guess(const std::vector<std::string>& running, const std::optional<std::string>& frontmost) {
    if (frontmost) {
        if (const auto* const app = std::ranges::find(apps, *frontmost, &App::identifier); app != apps.end()) {
            return app->label;
        }
    }
    for (const auto& [identifier, label] : apps) {
        if (std::ranges::find(running, identifier) != running.end()) {
            return label;
        }
    }
    return frontmost && std::ranges::find(browsers, *frontmost) != browsers.end() ? "Browser call" : "Call";
}

} // namespace varnic::CallSource
