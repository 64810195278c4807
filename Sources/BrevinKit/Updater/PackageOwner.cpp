#include "BrevinKit/Updater/PackageOwner.h"

#include <fmt/format.h>

#include <QFile>
#include <QProcess>
#include <QStringList>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

namespace brevin {

namespace {

namespace fs = std::filesystem;

/// What a command prints, where it succeeds.
std::optional<std::string> outputOf(const QString& command, const QStringList& arguments) {
    QProcess process;
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(command, arguments, QIODevice::ReadOnly);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        return std::nullopt;
    }
    return process.readAllStandardOutput().toStdString();
}

/// Folders that no user writes to by hand.
bool isOfTheSystem(const fs::path& program) {
    constexpr std::array<std::string_view, 4> places{"/usr/", "/bin/", "/sbin/", "/nix/store/"};
    const std::string& path = program.native();
    return !path.starts_with("/usr/local/") &&
           std::ranges::any_of(places, [&path](std::string_view place) { return path.starts_with(place); });
}

} // namespace

std::optional<PackageOwner> PackageOwner::of(const fs::path& program) {
    if (const char* flatpak = std::getenv("FLATPAK_ID"); flatpak != nullptr && fs::exists("/.flatpak-info")) {
        return PackageOwner{.system = System::flatpak, .package = flatpak};
    }
    const QString path = QFile::decodeName(program.c_str());
    // "package:architecture, another: /path"
    if (const auto answer = outputOf("dpkg-query", {"--search", "--", path})) {
        return PackageOwner{.system = System::dpkg, .package = answer->substr(0, answer->find_first_of(":,"))};
    }
    if (const auto answer = outputOf("rpm", {"--query", "--queryformat", "%{NAME}\\n", "--file", path})) {
        return PackageOwner{.system = System::rpm, .package = answer->substr(0, answer->find('\n'))};
    }
    return isOfTheSystem(program) ? std::optional(PackageOwner{.system = System::other, .package = {}}) : std::nullopt;
}

std::string PackageOwner::advice(const std::string& appName) const {
    switch (system) {
    case System::dpkg:
        return fmt::format(
            "Your system’s packages update {}: with its software centre, or by “sudo apt install {}” in a "
            "terminal.",
            appName, package);
    case System::rpm:
        return fmt::format(
            "Your system’s packages update {}: with its software centre, or by “sudo dnf upgrade {}” in a "
            "terminal.",
            appName, package);
    case System::flatpak:
        return fmt::format("Flatpak updates {}: with your software centre, or by “flatpak update {}” in a terminal.",
                           appName, package);
    case System::other:
        break;
    }
    return fmt::format("Your system’s package manager updates {}.", appName);
}

} // namespace brevin
