#pragma once

#include "Varnic/AppModel/ScratchModel.h"
#include "Varnic/HandCapture.h"
#include "Varnic/Recording/RecordingController.h"
#include "Varnic/Shell/AppDelegate.h"
#include "VarnicCore/Fixtures/DemoCall.h"
#include "VarnicCore/Pipeline/Transcriber.h"
#include "VarnicPlatform/Capture/Permissions.h"

#include <gtest/gtest.h>

#include <memory>

namespace varnic {

/// A model whose microphone the test works by hand.
class ShellTest : public testing::Test {
protected:
    ShellTest() {
        Permissions::override = {PermissionState::granted, PermissionState::granted, PermissionState::denied};
        model->settings.consentSeen = true;
        model->makeCapture = [this] {
            return capture = std::make_shared<HandCapture>(std::vector{Speaker::you, Speaker::them});
        };
        model->makeTranscriber = [this] {
            auto transcriber = std::make_shared<FakeTranscriber>();
            transcriber->segments = DemoCall::segments(0, 1);
            transcriber->failure = failure;
            return transcriber;
        };
    }

    ~ShellTest() override { Permissions::override.reset(); }

    /// What goes on comes to its end first.
    void TearDown() override {
        EXPECT_TRUE(
            waitUntil([this] { return !isBusy(model->recorder().state()) && model->processing.value().empty(); }));
        QCoreApplication::processEvents();
    }

    /// Records a second of both sides, and goes on recording.
    void record() {
        QCoro::waitFor(model->startRecording(false));
        ASSERT_TRUE(isRecording(model->recorder().state()));
        capture->play(Speaker::you, 0, 1);
        capture->play(Speaker::them, 0, 1);
    }

    ScratchModel model;
    std::shared_ptr<HandCapture> capture;
    std::optional<TranscriberError> failure;
};

} // namespace varnic
