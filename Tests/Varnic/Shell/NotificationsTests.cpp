#include "Varnic/Recording/RecordingController.h"
#include "Varnic/Shell/Notifications.h"

#include "Varnic/Recording/RecordingHealth.h"
#include "Varnic/Shell/ShellTest.h"
#include "VarnicCore/Audio/TranscriberError.h"
#include "VarnicPlatform/Desktop/XServer.h"

#include <gmock/gmock.h>

#include <QProcess>

namespace varnic {
namespace {

/// A real notification server on a real screen; it prints what it shows.
class NotificationsTest : public ShellTest {
protected:
    NotificationsTest() {
        notifications.isWindowInFront = [this] { return isInFront; };
        model->desktop.activate = [this] { ++activations; };
        server.start("dunst", {"-conf", "/dev/null", "-print"});
        EXPECT_TRUE(server.waitForStarted());
        // It serves once it answers.
        EXPECT_TRUE(waitUntil([] { return runProgram({"dunstctl", "is-paused"}) == 0; }));
    }

    void TearDown() override {
        ShellTest::TearDown();
        server.kill();
        server.waitForFinished();
    }

    bool comesToShow(const QString& text) {
        return waitUntil([&] { return (shown += QString::fromUtf8(server.readAll())).contains(text); });
    }

    XServer screen;
    QProcess server;
    QString shown;
    bool isInFront = false;
    int activations = 0;
    Notifications notifications{*model};
};

TEST_F(NotificationsTest, filedCall_isToldAndAClickShowsIt) {
    ASSERT_NO_FATAL_FAILURE(record());
    const Uuid call = model->recorder().noteID();
    model->stopRecording();
    ASSERT_TRUE(comesToShow("is written down"));
    EXPECT_TRUE(shown.contains(QString::fromStdString("“" + model->note(call)->displayTitle() + "”")));
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
    model->flash({.text = "Email copied", .symbol = "doc.on.doc"});
    model->flash({.text = "Recording stopped — the disk is full", .symbol = "exclamationmark.triangle"});
    ASSERT_TRUE(comesToShow("Recording stopped — the disk is full"));
    EXPECT_FALSE(shown.contains("Seen in the window"));
    EXPECT_FALSE(shown.contains("Email copied"));
}

TEST_F(NotificationsTest, warningWhileRecording_isTold) {
    ASSERT_NO_FATAL_FAILURE(record());
    model->recorder().diskSpace = [](const std::filesystem::path&) { return RecordingHealth::lowDisk - 1; };
    ASSERT_TRUE(waitUntil([this] { return model->recorder().warning().has_value(); }));
    EXPECT_TRUE(comesToShow(QString::fromStdString(*model->recorder().warning())));
    model->discardRecording();
}

} // namespace
} // namespace varnic
