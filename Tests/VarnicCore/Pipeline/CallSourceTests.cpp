#include "VarnicCore/Pipeline/CallSource.h"
#include "VarnicCore/Pipeline/LinuxPrograms.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace varnic {
namespace {

struct Guess {
    std::vector<std::string> running;
    std::optional<std::string> frontmost;
    std::string label;
};

TEST(CallSource, guess_frontThenTableThenBrowser) {
    const std::string zoom = "us.zoom.xos";
    const std::string teams = "com.microsoft.teams2";
    const std::string safari = "com.apple.Safari";
    const std::vector<Guess> guesses{
        {{zoom, teams}, teams, "Microsoft Teams"},
        {{teams, zoom}, "org.gnome.TextEditor", "Zoom"},
        {{safari, "com.tinyspeck.slackmacgap"}, safari, "Slack huddle"},
        {{safari}, safari, "Browser call"},
        {{safari}, std::nullopt, "Call"},
        {{}, std::nullopt, "Call"},
        {{"US.ZOOM.XOS"}, "US.ZOOM.XOS", "Call"},
        {{}, "Cisco-Systems.Spark", "Webex"},
    };
    for (const auto& [running, frontmost, label] : guesses) {
        EXPECT_EQ(CallSource::guess(running, frontmost), label);
    }
}

TEST(LinuxPrograms, bundleIdentifier_ofEveryWayToNameAProgram) {
    const std::vector<std::pair<std::string, std::string>> labels{
        {"zoom", "Zoom"},
        {"/opt/zoom/zoom", "Zoom"},
        {"Zoom.desktop", "Zoom"},
        {"us.zoom.Zoom", "Zoom"},
        {"zoom-client_zoom-client.desktop", "Zoom"},
        {"teams-for-linux", "Microsoft Teams"},
        {"com.github.IsmaelMartinez.teams_for_linux.desktop", "Microsoft Teams"},
        {"Microsoft Teams - Preview", "Microsoft Teams"},
        {"/opt/Webex/bin/CiscoCollabHost", "Webex"},
        {"com.slack.Slack", "Slack huddle"},
        {"slack_slack.desktop", "Slack huddle"},
        {"Discord", "Discord"},
        {"com.discordapp.Discord", "Discord"},
        {"whatsapp-for-linux", "WhatsApp"},
        {"com.github.eneshecan.WhatsAppForLinux", "WhatsApp"},
        {"skype_skypeforlinux.desktop", "Skype"},
        {"firefox-esr", "Browser call"},
        {"firefox_firefox.desktop", "Browser call"},
        {"Google-chrome", "Browser call"},
        {"chromium", "Browser call"},
        {"com.microsoft.Edge.desktop", "Browser call"},
        {"brave_brave.desktop", "Browser call"},
        {"org.gnome.Epiphany", "Browser call"},
    };
    for (const auto& [program, label] : labels) {
        const auto identifier = LinuxPrograms::bundleIdentifier(program);
        ASSERT_TRUE(identifier) << program;
        EXPECT_EQ(CallSource::guess({}, std::string(*identifier)), label) << program;
    }
}

TEST(LinuxPrograms, bundleIdentifier_ofOtherProgramsIsNone) {
    for (const std::string program : {"", "/", ".desktop", "_", "gedit", "zoomer", "org.gnome.TextEditor.desktop"}) {
        EXPECT_EQ(LinuxPrograms::bundleIdentifier(program), std::nullopt) << program;
    }
}

} // namespace
} // namespace varnic
