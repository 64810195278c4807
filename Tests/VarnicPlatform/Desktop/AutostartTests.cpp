#include "VarnicPlatform/Desktop/Autostart.h"

#include "VarnicCore/TemporaryFolder.h"
#include "VarnicPlatform/Desktop/ChildProgram.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace varnic {
namespace {

class AutostartTest : public testing::Test {
protected:
    static std::string entry() {
        std::ifstream stream(Autostart::file());
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    static void write(const std::string& text) { std::ofstream(Autostart::file()) << text; }

    TemporaryFolder folder;
    const std::string config = folder.path() / "config";
    EnvironmentVariable configHome{"XDG_CONFIG_HOME", config.c_str()};
};

TEST_F(AutostartTest, set_makesAnEntryThatDesktopsTakeAndRemovesIt) {
    EXPECT_FALSE(Autostart::isOn());
    Autostart::set(false, "varnic");
    Autostart::set(true, "varnic");
    EXPECT_TRUE(Autostart::isOn());
    EXPECT_NE(entry().find("Exec=\"varnic\" --background\n"), std::string::npos) << entry();
    EXPECT_EQ(runProgram({"desktop-file-validate", Autostart::file()}), 0);
    Autostart::set(false, "varnic");
    EXPECT_FALSE(Autostart::isOn());
    EXPECT_FALSE(std::filesystem::exists(Autostart::file()));
}

TEST_F(AutostartTest, set_pathWithSpecialCharacters_isQuoted) {
    Autostart::set(true, "/opt/100% \"mine\"/$varnic");
    EXPECT_NE(entry().find(R"(Exec="/opt/100%% \\"mine\\"/\\$varnic" --background)"), std::string::npos) << entry();
    EXPECT_EQ(runProgram({"desktop-file-validate", Autostart::file()}), 0);
}

TEST_F(AutostartTest, isOn_entrySwitchedOffByTheDesktop_isOff) {
    Autostart::set(true, "varnic");
    const std::string on = entry();
    for (const char* line : {"Hidden=true\n", "X-GNOME-Autostart-enabled=false\n"}) {
        write(on + line);
        EXPECT_FALSE(Autostart::isOn()) << line;
    }
    write("no entry");
    EXPECT_FALSE(Autostart::isOn());
    Autostart::set(true, "varnic");
    EXPECT_TRUE(Autostart::isOn());
}

TEST_F(AutostartTest, set_cantBeWritten_saysSo) {
    std::ofstream(config) << "in the way";
    EXPECT_THROW(Autostart::set(true, "varnic"), Autostart::Error);
    EXPECT_FALSE(Autostart::isOn());
}

} // namespace
} // namespace varnic
