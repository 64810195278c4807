#include "VarnicPlatform/Desktop/RunningPrograms.h"

#include "VarnicCore/Pipeline/LinuxPrograms.h"
#include "VarnicCore/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <fstream>

namespace varnic {
namespace {

namespace fs = std::filesystem;

TEST(RunningPrograms, identifiers_binariesSandboxesAndOthers) {
    const TemporaryFolder proc;
    const auto process = [&proc](const std::string& id, const std::string& binary, const std::string& cgroup) {
        fs::create_directories(proc.path() / id);
        fs::create_symlink(binary, proc.path() / id / "exe");
        std::ofstream(proc.path() / id / "cgroup") << cgroup << '\n';
    };
    process("12", "/opt/zoom/zoom", "0::/user.slice/app.slice/app-org.kde.konsole-77.scope");
    process("13", "/opt/zoom/zoom", "");
    process("14", "/app/bin/bwrap", "0::/user.slice/app.slice/app-flatpak-com.slack.Slack-4711.scope");
    process("15", "/usr/bin/bash", "0::/");
    process("self", "/usr/bin/skypeforlinux", "");
    fs::create_directories(proc.path() / "16");

    EXPECT_THAT(RunningPrograms::identifiers(proc.path()),
                testing::UnorderedElementsAre(*LinuxPrograms::bundleIdentifier("zoom"),
                                              *LinuxPrograms::bundleIdentifier("slack")));
    EXPECT_THAT(RunningPrograms::identifiers("/nowhere"), testing::IsEmpty());
}

} // namespace
} // namespace varnic
