#include "VarnicCore/Pipeline/LinuxPrograms.h"

#include <algorithm>
#include <array>
#include <string>

namespace varnic::LinuxPrograms {

namespace {

constexpr std::string_view zoom = "us.zoom.xos";
constexpr std::string_view teams = "com.microsoft.teams2";
constexpr std::string_view oldTeams = "com.microsoft.teams";
constexpr std::string_view webex = "Cisco-Systems.Spark";
constexpr std::string_view slack = "com.tinyspeck.slackmacgap";
constexpr std::string_view discord = "com.hnc.Discord";
constexpr std::string_view whatsApp = "net.whatsapp.WhatsApp";
constexpr std::string_view skype = "com.skype.skype";
constexpr std::string_view chrome = "com.google.Chrome";
constexpr std::string_view firefox = "org.mozilla.firefox";
constexpr std::string_view edge = "com.microsoft.edgemac";
constexpr std::string_view brave = "com.brave.Browser";
constexpr std::string_view safari = "com.apple.Safari";

struct Program {
    /// In lower case.
    std::string_view name;
    std::string_view identifier;
};

/// Binaries, desktop entries and window classes first, then Flatpak ids.
constexpr auto programs = std::to_array<Program>({
    {"zoom", zoom},
    {"zoom.real", zoom},
    {"zoom-us", zoom},
    {"zoom-client", zoom},
    {"us.zoom.zoom", zoom},

    // Microsoft's own program of 2019 to 2022, and the client that took its place.
    {"teams", oldTeams},
    {"teams-insiders", oldTeams},
    {"microsoft teams - preview", oldTeams},
    {"com.microsoft.teams", oldTeams},
    {"teams-for-linux", teams},
    {"com.github.ismaelmartinez.teams_for_linux", teams},

    {"webex", webex},
    {"ciscocollabhost", webex},
    {"ciscocollabhostcef", webex},

    {"slack", slack},
    {"com.slack.slack", slack},

    {"discord", discord},
    {"discord-ptb", discord},
    {"discordptb", discord},
    {"discord-canary", discord},
    {"discordcanary", discord},
    {"vesktop", discord},
    {"webcord", discord},
    {"com.discordapp.discord", discord},
    {"com.discordapp.discordcanary", discord},
    {"dev.vencord.vesktop", discord},
    {"io.github.spacingbat3.webcord", discord},

    // WhatsApp has no program of its own here; these are the clients in use.
    {"whatsapp-for-linux", whatsApp},
    {"wasistlos", whatsApp},
    {"whatsie", whatsApp},
    {"zapzap", whatsApp},
    {"com.github.eneshecan.whatsappforlinux", whatsApp},
    {"com.github.xeco23.wasistlos", whatsApp},
    {"com.ktechpit.whatsie", whatsApp},
    {"com.rtosta.zapzap", whatsApp},
    {"io.github.mimbrero.whatsappdesktop", whatsApp},

    {"skype", skype},
    {"skypeforlinux", skype},
    {"com.skype.client", skype},

    {"chrome", chrome},
    {"google-chrome", chrome},
    {"google-chrome-stable", chrome},
    {"google-chrome-beta", chrome},
    {"google-chrome-unstable", chrome},
    {"chromium", chrome},
    {"chromium-browser", chrome},
    {"vivaldi", chrome},
    {"vivaldi-bin", chrome},
    {"vivaldi-stable", chrome},
    {"opera", chrome},
    {"com.google.chrome", chrome},
    {"org.chromium.chromium", chrome},
    {"com.github.eloston.ungoogledchromium", chrome},
    {"io.github.ungoogled_software.ungoogled_chromium", chrome},
    {"com.vivaldi.vivaldi", chrome},
    {"com.opera.opera", chrome},

    {"firefox", firefox},
    {"firefox-bin", firefox},
    {"firefox-esr", firefox},
    {"librewolf", firefox},
    {"org.mozilla.firefox", firefox},
    {"io.gitlab.librewolf-community", firefox},

    {"msedge", edge},
    {"microsoft-edge", edge},
    {"microsoft-edge-stable", edge},
    {"microsoft-edge-beta", edge},
    {"microsoft-edge-dev", edge},
    {"com.microsoft.edge", edge},

    {"brave", brave},
    {"brave-browser", brave},
    {"brave-browser-stable", brave},
    {"com.brave.browser", brave},

    {"epiphany", safari},
    {"epiphany-browser", safari},
    {"org.gnome.epiphany", safari},
});

std::optional<std::string_view> find(std::string_view name) {
    const auto* const found = std::ranges::find(programs, name, &Program::name);
    return found == programs.end() ? std::nullopt : std::optional(found->identifier);
}

/// The last part of a path, without ".desktop", in lower case.
std::string plainName(std::string_view program) {
    std::string name(program.substr(program.rfind('/') + 1));
    std::ranges::transform(name, name.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    constexpr std::string_view suffix = ".desktop";
    if (name.ends_with(suffix)) {
        name.resize(name.size() - suffix.size());
    }
    return name;
}

} // namespace

std::optional<std::string_view> bundleIdentifier(std::string_view program) {
    const std::string name = plainName(program);
    if (const auto identifier = find(name)) {
        return identifier;
    }
    // A snap's desktop entry is called SNAP_PROGRAM.
    const std::size_t underscore = name.find('_');
    return underscore == std::string::npos ? std::nullopt : find(std::string_view(name).substr(underscore + 1));
}

} // namespace varnic::LinuxPrograms
