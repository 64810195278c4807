#include "VarnicPlatform/Hotkey/KeyCombination.h"

#include <gtest/gtest.h>

#include <string>

namespace varnic {
namespace {

TEST(KeyCombination, titles_areReadBack) {
    struct Case {
        KeyCombination combination;
        std::string title;
        std::string trigger;
    };

    for (const auto& [combination, title, trigger] :
         {Case{{.control = true, .alt = true, .super = true}, "Ctrl+Alt+Super+R", "CTRL+ALT+LOGO+r"},
          Case{{.alt = true, .shift = true, .key = '7'}, "Alt+Shift+7", "ALT+SHIFT+7"},
          Case{{.key = 0xffbe}, "F1", "F1"}, Case{{.shift = true, .key = 0xffc9}, "Shift+F12", "SHIFT+F12"},
          Case{{.super = true, .key = 0xff56}, "Super+Page Down", "LOGO+Next"},
          Case{{.control = true, .key = '-'}, "Ctrl+-", "CTRL+minus"},
          Case{{.key = 0x1008ffb2}, "Microphone Mute", "XF86AudioMicMute"}}) {
        EXPECT_EQ(combination.title(), title);
        EXPECT_EQ(combination.portalTrigger(), trigger);
        EXPECT_EQ(KeyCombination::parse(title), combination) << title;
    }
    for (const char* text :
         {"", "Ctrl+", "R+Ctrl", "ctrl+r", "Ctrl+Ctrl+R", "F25", "F0", "Alt+Ctrl+R", "Ctrl+r", "Ctrl+Ä"}) {
        EXPECT_EQ(KeyCombination::parse(text), std::nullopt) << text;
    }
}

TEST(KeyCombination, problem_whatWouldBeInTheWay_isRefused) {
    for (const char* title :
         {"R", "Shift+R", "Shift+7", "Space", "Shift+Tab", "Home", "Ctrl+Alt+F2", "Ctrl+Alt+Shift+F9"}) {
        EXPECT_TRUE(KeyCombination::parse(title)->problem()) << title;
    }
    for (const char* title :
         {"Ctrl+R", "Super+7", "Alt+Shift+Space", "F9", "Pause", "Shift+F9", "Alt+F9", "Media Record"}) {
        EXPECT_FALSE(KeyCombination::parse(title)->problem()) << title;
    }
    EXPECT_TRUE((KeyCombination{.control = true, .key = 0xffe1}.problem())) << "a modifier alone";
}

} // namespace
} // namespace varnic
