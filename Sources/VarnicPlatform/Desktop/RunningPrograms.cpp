#include "VarnicPlatform/Desktop/RunningPrograms.h"

#include "VarnicCore/Pipeline/LinuxPrograms.h"

#include <fstream>
#include <set>
#include <string_view>
#include <utility>

namespace varnic::RunningPrograms {

namespace {

namespace fs = std::filesystem;

/// The Flatpak id in a process's control group, whose last part is "app-flatpak-ID-NUMBER.scope".
std::string flatpakId(const fs::path& process) {
    constexpr std::string_view mark = "app-flatpak-";
    std::ifstream file(process / "cgroup");
    for (std::string line; std::getline(file, line);) {
        const std::size_t at = line.rfind(mark);
        const std::size_t end = line.rfind('-');
        if (at != std::string::npos && end > at + mark.size()) {
            return line.substr(at + mark.size(), end - at - mark.size());
        }
    }
    return {};
}

/// The names under which a process may be known.
std::vector<std::string> names(const fs::path& process) {
    std::vector<std::string> names{flatpakId(process)};
    std::error_code error;
    if (const fs::path binary = fs::read_symlink(process / "exe", error); !error) {
        names.push_back(binary.filename().string());
    }
    // The name of a program that runs in an interpreter or a sandbox of its own.
    std::string name;
    if (std::ifstream(process / "comm") >> name) {
        names.push_back(name);
    }
    return names;
}

bool isProcess(const fs::path& folder) {
    const std::string name = folder.filename().string();
    return name.find_first_not_of("0123456789") == std::string::npos;
}

std::optional<std::string> identifierOf(const fs::path& process) {
    for (const std::string& name : names(process)) {
        if (const auto identifier = LinuxPrograms::bundleIdentifier(name)) {
            return std::string(*identifier);
        }
    }
    return std::nullopt;
}

} // namespace

std::vector<std::string> identifiers(const fs::path& proc) {
    std::set<std::string> found;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(proc, error)) {
        if (auto identifier = isProcess(entry.path()) ? identifierOf(entry.path()) : std::nullopt) {
            found.insert(std::move(*identifier));
        }
    }
    return {found.begin(), found.end()};
}

std::optional<std::string> identifier(pid_t process, const fs::path& proc) {
    return identifierOf(proc / std::to_string(process));
}

} // namespace varnic::RunningPrograms
