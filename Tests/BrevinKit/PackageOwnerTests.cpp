#include "BrevinKit/TestBundle.h"
#include "BrevinKit/Updater/PackageOwner.h"
#include "VarnicCore/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <string>

namespace brevin {
namespace {

namespace fs = std::filesystem;
using System = PackageOwner::System;

/// Only the commands of a folder are found.
class PackageOwnerTest : public testing::Test {
protected:
    void SetUp() override { ::setenv("PATH", folder.path().c_str(), 1); }

    void TearDown() override { ::setenv("PATH", path.c_str(), 1); }

    void addCommand(const std::string& name, const std::string& script) const {
        writeFile(folder.path() / name, "#!/bin/sh\n" + script + "\n");
        fs::permissions(folder.path() / name, fs::perms(0755));
    }

    std::string path = std::getenv("PATH");
    varnic::TemporaryFolder folder;
};

TEST_F(PackageOwnerTest, of_isWhoseDatabaseKnowsTheProgram) {
    EXPECT_EQ(PackageOwner::of("/home/ada/Varnic.app/Contents/bin/varnic"), std::nullopt);
    EXPECT_EQ(PackageOwner::of("/usr/local/bin/varnic"), std::nullopt);
    EXPECT_EQ(PackageOwner::of("/usr/bin/varnic"), (PackageOwner{.system = System::other, .package = ""}));
    // As they answer: rpm also where it knows nothing.
    addCommand("rpm", "echo varnic-tools");
    EXPECT_EQ(PackageOwner::of("/opt/varnic"), (PackageOwner{.system = System::rpm, .package = "varnic-tools"}));
    addCommand("dpkg-query", "[ \"$3\" = /opt/varnic ] && echo \"varnic:amd64: $3\"");
    EXPECT_EQ(PackageOwner::of("/opt/varnic"), (PackageOwner{.system = System::dpkg, .package = "varnic"}));
    addCommand("rpm", "echo 'file is not owned by any package'; exit 1");
    EXPECT_EQ(PackageOwner::of("/opt/other"), std::nullopt);
}

TEST(PackageOwnerAdvice, advice_namesTheSystemsOwnWay) {
    const auto advice = [](System system) {
        return PackageOwner{.system = system, .package = "varnic"}.advice("Varnic");
    };
    EXPECT_THAT(advice(System::dpkg), testing::HasSubstr("“sudo apt install varnic”"));
    EXPECT_THAT(advice(System::rpm), testing::HasSubstr("“sudo dnf upgrade varnic”"));
    EXPECT_THAT(advice(System::flatpak), testing::HasSubstr("“flatpak update varnic”"));
    EXPECT_EQ(advice(System::other), "Your system’s package manager updates Varnic.");
}

} // namespace
} // namespace brevin
