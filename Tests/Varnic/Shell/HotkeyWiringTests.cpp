#include "Varnic/Recording/RecordingController.h"
#include "Varnic/Shell/HotkeyKeys.h"
#include "Varnic/Shell/ShellTest.h"
#include "VarnicPlatform/Desktop/XServer.h"

#include <gtest/gtest.h>

#include <string>

namespace varnic {
namespace {

class HotkeyWiringTest : public ShellTest {
protected:
    void launch() { QCoro::waitFor(delegate.applicationDidFinishLaunching()); }

    static void press(const std::string& keys) { ASSERT_EQ(runProgram({"xdotool", "key", keys}), 0); }

    bool comesToRecord(bool isWanted) {
        return waitUntil([this, isWanted] {
            const SessionState& state = model->recorder().state();
            return isWanted ? isRecording(state) : !isBusy(state);
        });
    }

    XServer server;
    AppDelegate delegate{*model};
};

TEST_F(HotkeyWiringTest, settings_registerAnewAtOnce) {
    launch();
    model->settings.hotkey = HotkeyChoice::optShiftR;
    EXPECT_EQ(delegate.hotkeyNote.value(), "Alt+Shift+R works in every program.");
    press("ctrl+alt+super+r");
    press("alt+shift+r");
    ASSERT_TRUE(comesToRecord(true));
    capture->play(Speaker::you, 0, 1);
    model->settings.hotkeyEnabled = false;
    EXPECT_EQ(delegate.hotkeyNote.value(), "");
    press("alt+shift+r");
    model->settings.hotkey = HotkeyChoice::ctrlShiftR;
    EXPECT_EQ(delegate.hotkeyNote.value(), "");
    model->settings.hotkeyEnabled = true;
    press("ctrl+shift+r");
    EXPECT_TRUE(comesToRecord(false));
}

TEST_F(HotkeyWiringTest, keysOfTheUsersOwn_takeTheChoicesPlaceAtOnce) {
    launch();
    model->settings.hotkeyKeys = "Alt+Shift+F9";
    EXPECT_EQ(delegate.hotkeyNote.value(), "Alt+Shift+F9 works in every program.");
    EXPECT_EQ(delegate.hotkeyState.value(), Hotkey::State::registered);
    press("ctrl+alt+super+r");
    press("alt+shift+F9");
    ASSERT_TRUE(comesToRecord(true));
    capture->play(Speaker::you, 0, 1);
    press("alt+shift+F9");
    EXPECT_TRUE(comesToRecord(false));
    for (const char* useless : {"R", "brainwave", ""}) {
        model->settings.hotkeyKeys = useless;
        EXPECT_EQ(delegate.hotkeyNote.value(), "Ctrl+Alt+Super+R works in every program.") << useless;
    }
}

TEST(HotkeyKeys, pressed_givesWhatCanBeStored) {
    EXPECT_EQ(pressed(Qt::Key_K, Qt::ControlModifier | Qt::MetaModifier)->title(), "Ctrl+Super+K");
    EXPECT_EQ(pressed(Qt::Key_F12, Qt::NoModifier)->title(), "F12");
    EXPECT_EQ(pressed(Qt::Key_PageUp, Qt::AltModifier | Qt::ShiftModifier)->title(), "Alt+Shift+Page Up");
    EXPECT_EQ(pressed(Qt::Key_5, Qt::AltModifier | Qt::KeypadModifier)->title(), "Alt+5");
    for (const Qt::Key key : {Qt::Key_Control, Qt::Key_Super_L, Qt::Key_AltGr, Qt::Key_unknown, Qt::Key_Escape}) {
        EXPECT_EQ(pressed(key, Qt::ControlModifier), std::nullopt) << key;
    }
}

TEST_F(HotkeyWiringTest, takenCombination_isTold) {
    launch();
    ScratchModel other;
    AppDelegate second(*other);
    QCoro::waitFor(second.applicationDidFinishLaunching());
    ASSERT_TRUE(other->toast.value());
    EXPECT_EQ(other->toast.value()->text, "Ctrl+Alt+Super+R is taken by another program");
    EXPECT_EQ(second.hotkeyNote.value(), "Ctrl+Alt+Super+R is taken by another program.");
}

} // namespace
} // namespace varnic
