#pragma once

#include "Varnic/AppModel/CallFlows.h"
#include "Varnic/Recording/RecordingController.h"
#include "Varnic/Shell/AppDelegate.h"

namespace varnic {

/// The shell's model, whose microphone the test works by hand.
class ShellTest : public CallFlowsTests {
protected:
    /// What goes on comes to its end first.
    void TearDown() override {
        EXPECT_TRUE(
            waitUntil([this] { return !isBusy(model->recorder().state()) && model->processing.value().empty(); }));
        QCoreApplication::processEvents();
        CallFlowsTests::TearDown();
    }

    /// Records a second of both sides, and goes on recording.
    void record() {
        QCoro::waitFor(model->startRecording(false));
        ASSERT_TRUE(isRecording(model->recorder().state()));
        capture->play(Speaker::you, 0, 1);
        capture->play(Speaker::them, 0, 1);
    }
};

} // namespace varnic
