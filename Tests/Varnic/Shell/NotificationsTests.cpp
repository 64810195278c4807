#include "Varnic/Shell/Notifications.h"

#include "Varnic/Recording/RecordingController.h"
#include "Varnic/Recording/RecordingHealth.h"
#include "Varnic/Shell/PillController.h"
#include "Varnic/Shell/RecordingNotice.h"
#include "Varnic/Shell/ShellTest.h"
#include "VarnicCore/Audio/TranscriberError.h"
#include "VarnicPlatform/Desktop/XServer.h"

#include <QScopeGuard>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace varnic {
namespace {

/// A real notification server on a real screen; it prints what it shows.
class NotificationsTest : public ShellTest {
protected:
    NotificationsTest() {
        notifications.isWindowInFront = [this] { return isInFront; };
        notifications.isToastInSight = [this] { return isInFront || areSettingsInFront; };
        model->desktop.activate = [this] { ++activations; };
        // It serves once it answers.
        EXPECT_TRUE(waitUntil([] { return runProgram({"dunstctl", "is-paused"}) == 0; }));
    }

    void TearDown() override {
        ShellTest::TearDown();
        server.signal(SIGKILL);
        server.wait();
    }

    bool comesToShow(const std::string& text) {
        return waitUntil([&] {
            std::ifstream told(output);
            shown = {std::istreambuf_iterator(told), {}};
            return shown.find(text) != std::string::npos;
        });
    }

    /// How many notifications are on the screen, as the server says.
    int displayed() const {
        const std::filesystem::path file = model.folder() / "count";
        runProgram({"sh", "-c", R"(dunstctl count displayed >"$0")", file});
        int count = -1;
        std::ifstream(file) >> count;
        return count;
    }

    XServer screen;
    const std::filesystem::path output = model.folder() / "shown";
    // A QProcess would make the thread sanitizer ignore the main thread from here on.
    ChildProgram server{{"sh", "-c", R"(exec dunst -conf /dev/null -print >"$0")", output}};
    std::string shown;
    bool isInFront = false;
    bool areSettingsInFront = false;
    int activations = 0;
    Notifications notifications{*model};
};

TEST_F(NotificationsTest, filedCall_isToldAndAClickShowsIt) {
    ASSERT_NO_FATAL_FAILURE(record());
    const Uuid call = model->recorder().noteID();
    model->stopRecording();
    ASSERT_TRUE(comesToShow("is written down"));
    EXPECT_NE(shown.find("“" + model->note(call)->displayTitle() + "”"), std::string::npos);
    model->selection = std::nullopt;
    ASSERT_TRUE(waitUntil([this] {
        // A click before the server has told the number of its notification goes nowhere.
        EXPECT_EQ(runProgram({"dunstctl", "action", "0"}), 0);
        return activations > 0;
    }));
    EXPECT_EQ(model->selection.value(), call);
}

TEST_F(NotificationsTest, failedTranscript_isTold) {
    failure = TranscriberError::unavailable();
    ASSERT_NO_FATAL_FAILURE(record());
    model->stopRecording();
    EXPECT_TRUE(comesToShow("couldn’t be written down"));
}

TEST_F(NotificationsTest, onlyWarningsAreTold_andOnlyUnseen) {
    isInFront = true;
    model->flash({.text = "Seen in the window", .symbol = "exclamationmark.triangle"});
    isInFront = false;
    areSettingsInFront = true;
    model->flash({.text = "Seen in the settings", .symbol = "exclamationmark.triangle"});
    areSettingsInFront = false;
    model->flash({.text = "Email copied", .symbol = "doc.on.doc"});
    model->flash({.text = "Recording stopped — the disk is full", .symbol = "exclamationmark.triangle"});
    ASSERT_TRUE(comesToShow("Recording stopped — the disk is full"));
    EXPECT_EQ(shown.find("Seen in the window"), std::string::npos);
    EXPECT_EQ(shown.find("Seen in the settings"), std::string::npos);
    EXPECT_EQ(shown.find("Email copied"), std::string::npos);
}

TEST_F(NotificationsTest, warningWhileRecording_isTold) {
    areSettingsInFront = true; // they don't show it
    ASSERT_NO_FATAL_FAILURE(record());
    model->recorder().diskSpace = [](const std::filesystem::path&) { return RecordingHealth::lowDisk - 1; };
    ASSERT_TRUE(waitUntil([this] { return model->recorder().warning().has_value(); }));
    EXPECT_TRUE(comesToShow(*model->recorder().warning()));
    model->discardRecording();
}

TEST_F(NotificationsTest, noticeOfARecording_staysWhileThatRuns) {
    RecordingNotice notice(*model);
    PillController controller(*model);
    controller.present = [&notice] { notice.present(); };
    controller.orderOut = [&notice] { notice.orderOut(); };
    model->desktop.refreshPill = [&controller] { controller.refresh(); };
    const auto before = qScopeGuard([this] { model->desktop.refreshPill = [] {}; });
    ASSERT_NO_FATAL_FAILURE(record());
    ASSERT_TRUE(waitUntil([this] { return displayed() == 1; }));
    ASSERT_TRUE(waitUntil([this] {
        EXPECT_EQ(runProgram({"dunstctl", "action", "0"}), 0);
        return activations > 0;
    }));
    EXPECT_EQ(displayed(), 1);
    model->discardRecording();
    EXPECT_TRUE(waitUntil([this] { return displayed() == 0; }));
}

} // namespace
} // namespace varnic
