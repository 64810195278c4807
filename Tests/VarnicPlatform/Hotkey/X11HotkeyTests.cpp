#include "VarnicPlatform/Desktop/DispatchUntil.h"
#include "VarnicPlatform/Desktop/XConnection.h"
#include "VarnicPlatform/Desktop/XServer.h"
#include "VarnicPlatform/Hotkey/Hotkey.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace varnic {
namespace {

constexpr KeyCombination ctrlShift{.control = true, .shift = true};
constexpr KeyCombination altShift{.alt = true, .shift = true};
constexpr KeyCombination ctrlAltSuper{.control = true, .alt = true, .super = true};

void press(const std::string& keys) {
    ASSERT_EQ(runProgram({"xdotool", "key", keys}), 0) << keys;
}

/// A program with a hotkey.
class Program {
public:
    explicit Program(DesktopEvents& events) : hotkey(events, Hotkey::System::x11) {}

    Hotkey hotkey;
    int presses = 0;

    Hotkey::State take(std::optional<KeyCombination> combination) {
        hotkey.registerCombination(combination, [this](const std::string&) { ++presses; });
        return hotkey.status().state;
    }
};

class X11HotkeyTest : public testing::Test {
protected:
    XServer server;
    DesktopEvents events;
    Program program{events};

    /// Changes the keyboard's layout, and lets the program learn of it.
    void setLayout(std::vector<std::string> words) {
        words.insert(words.begin(), "setxkbmap");
        ASSERT_EQ(runProgram(std::move(words)), 0);
        // Once the server has answered somebody else, it has told everybody of the layout.
        const XConnection other;
        std::free(xcb_get_input_focus_reply(other.get(), xcb_get_input_focus(other.get()), nullptr));
        events.dispatch();
    }

    bool comesToPresses(int count) {
        return dispatchUntil(events, [this, count] { return program.presses >= count; });
    }

    /// Waits for what came before, too, since events keep their order.
    void expectPressesWith(const std::string& keys, int count) {
        press(keys);
        ASSERT_TRUE(comesToPresses(count));
        EXPECT_EQ(program.presses, count);
    }
};

TEST_F(X11HotkeyTest, press_countsOnceAndOnlyForItsCombination) {
    struct Case {
        KeyCombination combination;
        std::string keys;
        std::string title;
    };

    const std::vector<Case> cases{{ctrlAltSuper, "ctrl+alt+super+r", "Ctrl+Alt+Super+R"},
                                  {altShift, "alt+shift+r", "Alt+Shift+R"},
                                  {ctrlShift, "ctrl+shift+r", "Ctrl+Shift+R"}};
    int presses = 0;
    for (const Case& one : cases) {
        ASSERT_EQ(program.take(one.combination), Hotkey::State::registered);
        EXPECT_EQ(program.hotkey.status().message, one.title + " works in every program.");
        for (const Case& other : cases) {
            if (other.keys != one.keys) {
                press(other.keys);
            }
        }
        for (const char* keys : {"r", "ctrl+r", "ctrl+alt+shift+super+r", "ctrl+shift+t", "alt+shift+e"}) {
            press(keys);
        }
        ASSERT_NO_FATAL_FAILURE(expectPressesWith(one.keys, ++presses));
    }
}

TEST_F(X11HotkeyTest, press_countsUnderLocks) {
    ASSERT_EQ(program.take(ctrlShift), Hotkey::State::registered);
    int presses = 0;
    for (const char* lock : {"Num_Lock", "Caps_Lock", "Num_Lock", "Caps_Lock"}) {
        press(lock);
        ASSERT_NO_FATAL_FAILURE(expectPressesWith("ctrl+shift+r", ++presses));
    }
}

TEST_F(X11HotkeyTest, heldKey_countsOnce) {
    ASSERT_EQ(program.take(ctrlShift), Hotkey::State::registered);
    ASSERT_EQ(runProgram({"xdotool", "keydown", "ctrl", "keydown", "shift", "keydown", "r"}), 0);
    ASSERT_TRUE(comesToPresses(1));
    // The server repeats the key by sending it again and again, which is what there is to dispatch.
    constexpr int repetitions = 5;
    for (int i = 0; i < repetitions; ++i) {
        pollfd readable{.fd = events.descriptor(), .events = POLLIN, .revents = 0};
        ASSERT_GT(::poll(&readable, 1, 30'000), 0);
        events.dispatch();
    }
    EXPECT_EQ(program.presses, 1);
    // Another key meanwhile is no press either.
    press("x");
    ASSERT_EQ(runProgram({"xdotool", "keyup", "r", "keyup", "shift", "keyup", "ctrl"}), 0);
    ASSERT_NO_FATAL_FAILURE(expectPressesWith("ctrl+shift+r", 2));
}

TEST_F(X11HotkeyTest, registerCombination_replacesAndUnregisters) {
    ASSERT_EQ(program.take(ctrlShift), Hotkey::State::registered);
    ASSERT_EQ(program.take(altShift), Hotkey::State::registered);
    press("ctrl+shift+r");
    ASSERT_NO_FATAL_FAILURE(expectPressesWith("alt+shift+r", 1));
    EXPECT_EQ(program.take(std::nullopt), Hotkey::State::off);
    EXPECT_EQ(program.hotkey.status().message, "");
    press("alt+shift+r");
    ASSERT_EQ(program.take(ctrlShift), Hotkey::State::registered);
    ASSERT_NO_FATAL_FAILURE(expectPressesWith("ctrl+shift+r", 2));
}

TEST_F(X11HotkeyTest, secondProgram_isToldThatTheKeysAreTaken) {
    ASSERT_EQ(program.take(ctrlAltSuper), Hotkey::State::registered);
    Program second(events);
    EXPECT_EQ(second.take(ctrlAltSuper), Hotkey::State::taken);
    EXPECT_EQ(second.hotkey.status().message, "Ctrl+Alt+Super+R is taken by another program.");
    ASSERT_NO_FATAL_FAILURE(expectPressesWith("ctrl+alt+super+r", 1));
    program.take(std::nullopt);
    EXPECT_EQ(second.take(ctrlAltSuper), Hotkey::State::registered);
    press("ctrl+alt+super+r");
    EXPECT_TRUE(dispatchUntil(events, [&second] { return second.presses == 1; }));
    EXPECT_EQ(program.presses, 1);
}

TEST_F(X11HotkeyTest, combinationTakenUnderOneLock_isTaken) {
    const XConnection other;
    constexpr xcb_keycode_t r = 27;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(other.get())).data->root;
    const auto request =
        xcb_grab_key_checked(other.get(), 0, root, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_LOCK, r,
                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    ASSERT_EQ(xcb_request_check(other.get(), request), nullptr);
    EXPECT_EQ(program.take(ctrlShift), Hotkey::State::taken);
    xcb_ungrab_key(other.get(), XCB_GRAB_ANY, root, XCB_MOD_MASK_ANY);
    std::free(xcb_get_input_focus_reply(other.get(), xcb_get_input_focus(other.get()), nullptr)); // It has happened.
    // Nothing was kept of the attempt.
    Program second(events);
    EXPECT_EQ(second.take(ctrlShift), Hotkey::State::registered);
}

TEST_F(X11HotkeyTest, layout_movesTheKey) {
    ASSERT_EQ(program.take(ctrlShift), Hotkey::State::registered);
    int presses = 0;

    struct Case {
        std::vector<std::string> layout;
        /// The key that is R in it.
        std::string code;
    };

    // Dvorak has R on the key of the Latin O; Russian alone has none; with both it is where Latin has it.
    for (const auto& [layout, code] :
         {Case{{"us"}, "27"}, Case{{"dvorak"}, "32"}, Case{{"us"}, "27"}, Case{{"ru"}, "27"}, Case{{"us,ru"}, "27"}}) {
        ASSERT_NO_FATAL_FAILURE(setLayout(layout));
        // Twice, so that no wrong key stands in for the right one.
        const std::string other = "ctrl+shift+" + std::string(code == "27" ? "32" : "27");
        press(other);
        press(other);
        ASSERT_NO_FATAL_FAILURE(expectPressesWith("ctrl+shift+" + code, ++presses));
    }
}

TEST_F(X11HotkeyTest, secondLayoutInUse_leavesTheHotkeyWhereItIs) {
    ASSERT_NO_FATAL_FAILURE(setLayout({"us,ru", "-option", "grp:menu_toggle"}));
    ASSERT_EQ(program.take(ctrlShift), Hotkey::State::registered);
    ASSERT_NO_FATAL_FAILURE(expectPressesWith("ctrl+shift+27", 1));
    press("ISO_Next_Group");
    ASSERT_NO_FATAL_FAILURE(expectPressesWith("ctrl+shift+27", 2));
}

TEST_F(X11HotkeyTest, serverGone_isTold) {
    ASSERT_EQ(program.take(ctrlShift), Hotkey::State::registered);
    server.kill();
    EXPECT_TRUE(dispatchUntil(events, [this] { return program.hotkey.status().state == Hotkey::State::unavailable; }));
    EXPECT_EQ(program.take(ctrlShift), Hotkey::State::unavailable);
    EXPECT_EQ(program.take(std::nullopt), Hotkey::State::off);
}

TEST(HotkeySystem, system_isThePortalUnderWayland) {
    const EnvironmentVariable display("DISPLAY", ":7");
    {
        const EnvironmentVariable wayland("WAYLAND_DISPLAY", "wayland-0");
        EXPECT_EQ(Hotkey::system(), Hotkey::System::portal);
    }
    const EnvironmentVariable wayland("WAYLAND_DISPLAY", nullptr);
    EXPECT_EQ(Hotkey::system(), Hotkey::System::x11);
}

} // namespace
} // namespace varnic
