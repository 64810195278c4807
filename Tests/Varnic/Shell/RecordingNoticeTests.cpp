#include "Varnic/Shell/RecordingNotice.h"

#include "Varnic/Recording/RecordingController.h"
#include "Varnic/Shell/PillController.h"
#include "Varnic/Shell/ShellTest.h"
#include "VarnicPlatform/Desktop/XServer.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

namespace varnic {
namespace {

/// A real notification server on a real screen, whose menu of actions picks the one that stops.
class RecordingNoticeTest : public ShellTest {
protected:
    RecordingNoticeTest() {
        model->desktop.activate = [this] { ++activations; };
        EXPECT_TRUE(waitUntil([] { return runProgram({"dunstctl", "is-paused"}) == 0; }));
        controller.present = [this] { notice.present(); };
        controller.orderOut = [this] { notice.orderOut(); };
        model->desktop.refreshPill = [this] { controller.refresh(); };
    }

    void TearDown() override {
        ShellTest::TearDown();
        model->desktop.refreshPill = [] {};
        server.signal(SIGKILL);
        server.wait();
    }

    /// How many notifications are on the screen, as the server says.
    int displayed() const {
        runProgram({"sh", "-c", R"(dunstctl count displayed >"$0")", output});
        int count = -1;
        std::ifstream(output) >> count;
        return count;
    }

    XServer screen;
    const std::filesystem::path output = model.folder() / "count";
    ChildProgram server{{"sh", "-c", R"(printf '[global]\ndmenu = grep Stop\n' >"$0" && exec dunst -conf "$0")",
                         model.folder() / "dunstrc"}};
    int activations = 0;
    RecordingNotice notice{*model};
    PillController controller{*model};
};

TEST_F(RecordingNoticeTest, staysWhileARecordingRuns) {
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

TEST_F(RecordingNoticeTest, stopsTheRecording) {
    ASSERT_NO_FATAL_FAILURE(record());
    const Uuid call = model->recorder().noteID();
    ASSERT_TRUE(waitUntil([this] { return displayed() == 1; }));
    EXPECT_EQ(runProgram({"dunstctl", "context"}), 0);
    ASSERT_TRUE(waitUntil([&] { return model->note(call) != nullptr; }));
    EXPECT_TRUE(waitUntil([this] { return displayed() == 0; }));
}

} // namespace
} // namespace varnic
