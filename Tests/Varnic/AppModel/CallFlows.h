#pragma once

#include "Varnic/AppModel/ScratchModel.h"
#include "Varnic/HandCapture.h"
#include "Varnic/Recording/RecordingController.h"
#include "VarnicCore/Fixtures/DemoCall.h"
#include "VarnicCore/Pipeline/Transcriber.h"
#include "VarnicPlatform/Capture/Permissions.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace varnic {

/// The application on a microphone that the test works by hand, and a transcriber that knows what was said.
class CallFlowsTests : public testing::Test {
protected:
    CallFlowsTests() {
        Permissions::override = {PermissionState::granted, PermissionState::granted, PermissionState::granted};
        prepare();
    }

    void TearDown() override { Permissions::override.reset(); }

    void prepare() {
        model->settings.liveTranscript = false;
        model->settings.consentSeen = true;
        model->makeCapture = [this] { return capture = std::make_shared<HandCapture>(sides); };
        model->makeTranscriber = [this] {
            auto transcriber = std::make_shared<FakeTranscriber>();
            transcriber->segments = DemoCall::segments(0, 1);
            transcriber->delay = delay;
            transcriber->failure = failure;
            return transcriber;
        };
    }

    /// A recording of a second, up to where the transcription runs, or what follows where that is over in no time.
    QCoro::Task<std::optional<Uuid>> record() {
        QCoro::waitFor(model->startRecording(false));
        capture->play(Speaker::you, 0, 1);
        auto stopping = model->stopRecording();
        EXPECT_TRUE(waitUntil([&] {
            return !model->processing.value().empty() || !model->aiRunning.value().empty() || stopping.isReady();
        }));
        return stopping;
    }

    /// The same, of a call in which words were shown that are then transcribed anew.
    QCoro::Task<std::optional<Uuid>> recordWithLiveWords() {
        model->settings.liveTranscript = true;
        model->recorder().makeRecognizer = [](Speaker side, const std::string&, const LiveRecognizer::Lines&,
                                              const LiveRecognizer::Lines& onCommit) {
            onCommit(side, {side == Speaker::you ? Segment(side, 0.2, 0.5, "Shall we send the designs tomorrow?")
                                                 : Segment(side, 0.6, 0.9, "Friday would be early enough.")});
            return nullptr;
        };
        QCoro::waitFor(model->startRecording(false));
        capture->play(Speaker::you, 0, 1);
        EXPECT_TRUE(waitUntil([&] { return model->recorder().committed().size() == 2; }));
        model->settings.liveTranscript = false;
        auto stopping = model->stopRecording();
        EXPECT_TRUE(waitUntil([&] { return !model->processing.value().empty() || stopping.isReady(); }));
        return stopping;
    }

    /// The same, up to where both tracks are being transcribed: deleting the call takes their files away.
    QCoro::Task<std::optional<Uuid>> recordUntilHeard() {
        delay = 1;
        auto stopping = record();
        EXPECT_TRUE(waitUntil([&] {
            const auto stages = model->processing.value();
            return stages.empty() || stages.begin()->second.fraction >= 0.5;
        }));
        return stopping;
    }

    /// The recording of a call that is in the library.
    Recording recordingOf(const Note& call) {
        return {.noteID = call.id,
                .tracks = model->existingTracks(call),
                .startedAt = call.call->startedAt,
                .duration = call.call->duration,
                .source = call.call->source,
                .audioFolder = call.id.text()};
    }

    [[nodiscard]] std::string toastText() { return model->toast.value() ? model->toast.value()->text : ""; }

    [[nodiscard]] std::vector<std::filesystem::path> audioFolders() {
        model->flushSaves();
        return {std::filesystem::directory_iterator(model.folder() / "Library" / "audio"), {}};
    }

    ScratchModel model;
    std::vector<Speaker> sides{Speaker::you, Speaker::them};
    std::shared_ptr<HandCapture> capture;
    double delay = 0;
    std::optional<TranscriberError> failure;
};

} // namespace varnic
