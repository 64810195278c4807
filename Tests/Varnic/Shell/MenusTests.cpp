#include "Varnic/Shell/Menus.h"

#include "Varnic/Recording/RecordingController.h"
#include "Varnic/Shell/MenuBarLabel.h"
#include "Varnic/Shell/PillController.h"
#include "Varnic/Shell/ShellTest.h"

#include <gmock/gmock.h>

#include <set>

namespace varnic {
namespace {

using testing::ElementsAre;

class MenusTest : public ShellTest {
protected:
    MenuEntry& entry(const std::string& text) {
        for (Menu& menu : menus.window) {
            for (MenuEntry& candidate : menu.entries) {
                if (candidate.text() == text) {
                    return candidate;
                }
            }
        }
        throw std::out_of_range(text);
    }

    std::vector<std::string> asked;
    Menus menus = varnic::menus(*model, [this] { asked.emplace_back("quit"); });
};

TEST_F(MenusTest, shortcuts_areOnesOwn) {
    std::set<std::string> shortcuts;
    for (const Menu& menu : menus.window) {
        for (const MenuEntry& one : menu.entries) {
            EXPECT_TRUE(one.shortcut.empty() || shortcuts.insert(one.shortcut).second) << one.text();
        }
    }
}

TEST_F(MenusTest, entries_doWhatTheySay) {
    std::string copied;
    model->desktop.closeWindow = [this] { asked.emplace_back("close"); };
    model->desktop.openSettings = [this](SettingsRow row) {
        EXPECT_EQ(row, SettingsRow::beginning);
        asked.emplace_back("settings");
    };
    model->desktop.copyText = [&copied](const std::string& text) { copied = text; };
    entry("New Note").perform();
    ASSERT_EQ(model->notes().size(), 1U);
    EXPECT_EQ(model->notes().front().title, "");
    EXPECT_EQ(model->notes().front().blocks.size(), 1U);
    entry("Copy Heads-up Message").perform();
    EXPECT_NE(copied, "");
    EXPECT_FALSE(entry("Show Transcript").isChecked());
    entry("Show Transcript").perform();
    EXPECT_TRUE(entry("Show Transcript").isChecked());
    entry("Show Transcript").perform();
    EXPECT_FALSE(model->showTranscript.value());
    entry("Recording Permissions…").perform();
    EXPECT_TRUE(model->showSetup.value());
    entry("Settings…").perform();
    entry("Close Window").perform();
    entry("Quit").perform();
    EXPECT_THAT(asked, ElementsAre("settings", "close", "quit"));
}

TEST_F(MenusTest, checkForUpdates_isThereWhereThereIsAFeed) {
    EXPECT_FALSE(entry("Check for Updates…").isEnabled());
    model->desktop.checkForUpdates = [this] { asked.emplace_back("check"); };
    EXPECT_TRUE(entry("Check for Updates…").isEnabled());
    entry("Check for Updates…").perform();
    EXPECT_THAT(asked, ElementsAre("check"));
}

TEST_F(MenusTest, going_clearsTheSearchAndSelectsTheFirstNoteOfTheList) {
    const Uuid note = model->newNote("A note");
    for (const auto& [text, section, selection] : {std::tuple("Calls", LibrarySection::calls, std::optional<Uuid>()),
                                                   std::tuple("Notes", LibrarySection::notes, std::optional(note)),
                                                   std::tuple("To-dos", LibrarySection::todos, std::optional(note)),
                                                   std::tuple("Flashcards", LibrarySection::cards, std::optional(note)),
                                                   std::tuple("All Notes", LibrarySection::all, std::optional(note))}) {
        model->query = "something";
        entry(text).perform();
        EXPECT_EQ(model->section.value(), section);
        EXPECT_EQ(model->selection.value(), selection) << text;
        EXPECT_EQ(model->query.value(), "");
    }
}

TEST_F(MenusTest, tray_recordsWritesOpensAndQuits) {
    model->desktop.activate = [this] { asked.emplace_back("activate"); };
    std::vector<std::string> texts;
    for (const MenuEntry& one : menus.tray) {
        texts.push_back(one.text());
        one.perform();
    }
    EXPECT_THAT(texts, ElementsAre("Record Call", "New Note", "Open Varnic", "Settings…", "Quit"));
    EXPECT_THAT(asked, ElementsAre("activate", "activate", "quit")) << "a new note and the window show";
    EXPECT_EQ(model->notes().size(), 1U);
    ASSERT_TRUE(waitUntil([this] { return isRecording(model->recorder().state()); }));
    EXPECT_EQ(menus.tray.front().text(), "Stop Recording");
    menus.tray.front().perform();
}

TEST_F(MenusTest, recordEntry_followsTheRecording) {
    entry("Record Call").perform();
    // While it starts, a press means nothing.
    ASSERT_TRUE(waitUntil([this] { return isBusy(model->recorder().state()); }));
    EXPECT_EQ(entry("Stop Recording").isEnabled(), isRecording(model->recorder().state()));
    ASSERT_TRUE(waitUntil([this] { return isRecording(model->recorder().state()); }));
    EXPECT_TRUE(entry("Stop Recording").isEnabled());
    capture->play(Speaker::you, 0, 1);
    entry("Stop Recording").perform();
    EXPECT_TRUE(waitUntil([this] { return model->notes().size() == 1 && model->processing.value().empty(); }));
    EXPECT_TRUE(entry("Record Call").isEnabled());
}

TEST(MenuBarLabel, of_isTheTimeOrTheSymbol) {
    const MenuBarLabel idle{.symbol = "pencil.tip.crop.circle"};
    EXPECT_EQ(MenuBarLabel::of(Session::Idle(), 0), idle);
    EXPECT_EQ(MenuBarLabel::of(Session::Failed{"no"}, 61), idle);
    for (const SessionState& busy :
         {SessionState(Session::Starting()), SessionState(Session::Recording()), SessionState(Session::Stopping())}) {
        EXPECT_EQ(MenuBarLabel::of(busy, 61), (MenuBarLabel{.showsDot = true, .text = "1:01"}));
    }
}

class PillTest : public ShellTest {
protected:
    PillTest() {
        pill.present = [this] { ++presented; };
        pill.orderOut = [this] { ++hidden; };
        model->desktop.refreshPill = [this] { pill.refresh(); };
    }

    int presented = 0;
    int hidden = 0;
    PillController pill{*model};
};

TEST_F(PillTest, recording_showsAndHidesIt) {
    ASSERT_NO_FATAL_FAILURE(record());
    EXPECT_TRUE(pill.isVisible());
    EXPECT_EQ(presented, 1);
    model->settings.showPill = false;
    EXPECT_FALSE(pill.isVisible());
    EXPECT_EQ(hidden, 1);
    model->settings.showPill = true;
    EXPECT_EQ(presented, 2);
    QCoro::waitFor(model->stopRecording());
    EXPECT_FALSE(pill.isVisible());
}

TEST_F(PillTest, demo_showsNone) {
    model->isDemo = true;
    ASSERT_NO_FATAL_FAILURE(record());
    EXPECT_FALSE(pill.isVisible());
    EXPECT_EQ(presented, 0);
    model->discardRecording();
}

} // namespace
} // namespace varnic
