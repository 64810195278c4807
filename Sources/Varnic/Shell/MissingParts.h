#pragma once

#include <string>
#include <vector>

namespace varnic {

/// What the desktop around the program brings, as far as the program is the less without it.
struct DesktopParts {
    /// A D-Bus session.
    bool hasBus = true;
    /// A tray that shows the program's icon.
    bool hasTray = true;
    /// What tells programs of dark mode and the like.
    bool hasPortal = true;
    /// The Debian packages of the program's fonts that are not installed.
    std::vector<std::string> fontPackages;
    bool isWayland = false;
    /// Something shows notifications.
    bool hasNotifications = true;

    /// What the session bus tells; the rest is as it stands above. Main thread; asks only the bus itself, which answers
    /// at once.
    static DesktopParts onBus();
};

/// A part that is missing.
struct MissingPart {
    /// "a tray"; empty for what is not worth a word unasked.
    std::string name;
    /// What the program can't do therefore, and what to install.
    std::string sentence;

    bool operator==(const MissingPart&) const = default;
};

namespace MissingParts {

/// The worst first. Pure, as the others.
std::vector<MissingPart> of(const DesktopParts& parts);

/// What becomes of the floating pill where no window can be kept in front; empty where one can.
std::string pillNote(const DesktopParts& parts);

/// Tells of parts by their names, in one sentence; empty where none has one.
std::string notice(const std::vector<std::string>& names);

} // namespace MissingParts
} // namespace varnic
