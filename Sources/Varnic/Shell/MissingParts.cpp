#include "Varnic/Shell/MissingParts.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <iterator>

namespace varnic {

namespace {

/// "a", "a and b", "a, b and c".
std::string listed(const std::vector<std::string>& words) {
    if (words.size() < 2) {
        return words.empty() ? std::string() : words.front();
    }
    return fmt::format("{} and {}", fmt::join(words.begin(), words.end() - 1, ", "), words.back());
}

} // namespace

DesktopParts DesktopParts::onBus() {
    DesktopParts parts;
    const QDBusConnection bus = QDBusConnection::sessionBus();
    parts.hasBus = bus.isConnected();
    QStringList names;
    if (parts.hasBus) {
        names = bus.interface()->registeredServiceNames().value() + bus.interface()->activatableServiceNames().value();
    }
    parts.hasPortal = names.contains(QStringLiteral("org.freedesktop.portal.Desktop"));
    parts.hasNotifications = names.contains(QStringLiteral("org.freedesktop.Notifications"));
    return parts;
}

namespace MissingParts {

std::vector<MissingPart> of(const DesktopParts& parts) {
    std::vector<MissingPart> missing;
    if (!parts.hasBus) {
        missing.push_back({"a D-Bus session",
                           "There is no D-Bus session, so there are no notifications and no key ring, and a second "
                           "start can’t bring this window to the front. On Debian, install dbus-user-session and log "
                           "in again."});
    }
    if (!parts.hasTray) {
        missing.push_back({"a tray", "No tray shows Varnic’s icon, so Varnic ends with its last window, once all is "
                                     "recorded and written down. GNOME has a tray with the package "
                                     "gnome-shell-extension-appindicator."});
    }
    if (!parts.fontPackages.empty()) {
        missing.push_back({"some of its fonts", fmt::format("Others stand in for fonts that aren’t installed. On "
                                                            "Debian, install {}.",
                                                            listed(parts.fontPackages))});
    }
    if (parts.hasBus && !parts.hasPortal) {
        missing.push_back({"", "Nothing tells programs whether the desktop is dark or keeps motion down. On Debian, "
                               "install xdg-desktop-portal with the package for your desktop, such as "
                               "xdg-desktop-portal-gtk."});
    }
    return missing;
}

std::string pillNote(const DesktopParts& parts) {
    if (!parts.isWayland) {
        return {};
    }
    return parts.hasNotifications
               ? "Wayland keeps no window in front of the others, so a notification with “Stop & Save” stands for it."
               : "Wayland keeps no window in front of the others, and nothing here shows notifications in its place. "
                 "On Debian, install mako-notifier or dunst.";
}

std::string notice(const std::vector<std::string>& names) {
    std::vector<std::string> told;
    std::ranges::copy_if(names, std::back_inserter(told), [](const std::string& name) { return !name.empty(); });
    return told.empty() ? std::string()
                        : fmt::format("Varnic doesn’t find {} — see Settings for what to install.", listed(told));
}

} // namespace MissingParts
} // namespace varnic
