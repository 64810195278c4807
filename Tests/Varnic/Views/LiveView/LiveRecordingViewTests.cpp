#include "Varnic/AppModel/ScratchModel.h"
#include "Varnic/HandCapture.h"
#include "Varnic/Recording/RecordingController.h"
#include "Varnic/Views/Context/ViewContext.h"
#include "Varnic/Views/Ink/InkTrail.h"
#include "Varnic/Views/ItemTree.h"
#include "Varnic/Views/LiveView/LiveCall.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>
#include <gmock/gmock.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

namespace varnic {
namespace {

class LiveRecordingViewTests : public testing::Test {
protected:
    LiveRecordingViewTests() {
        view.engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
        ViewContext{.model = *model}.giveTo(*view.engine());
        view.setResizeMode(QQuickView::SizeRootObjectToView);
        view.resize(800, 600);
        view.setSource(QUrl(QStringLiteral("qrc:/qt/qml/Varnic/LiveView/LiveRecordingView.qml")));
        view.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&view));
    }

    void record(std::vector<Speaker> sides = {Speaker::you, Speaker::them}) {
        capture = std::make_shared<HandCapture>(std::move(sides));
        QCoro::waitFor(model->recorder().start(Uuid::random(), model.folder() / "call", capture, std::nullopt, "Zoom"));
    }

    LiveCall& call() {
        return *view.engine()->singletonInstance<LiveCall*>(qmlTypeId("Varnic.LiveView", 1, 0, "LiveCall"));
    }

    [[nodiscard]] QQuickItem* item(const char* name) const { return within(view.contentItem(), name); }

    void click(const char* name) {
        QQuickItem* target = nullptr;
        ASSERT_TRUE(waitUntil([&] {
            target = item(name);
            return target != nullptr && target->isVisible() && target->width() > 0;
        })) << name;
        QTest::mouseClick(&view, Qt::LeftButton, {},
                          target->mapToScene(QPointF(target->width() / 2, target->height() / 2)).toPoint());
    }

    [[nodiscard]] bool isDialogOpen() const {
        return view.rootObject()->findChild<QObject*>(QStringLiteral("discardDialog"))->property("visible").toBool();
    }

    ScratchModel model;
    QQuickView view;
    std::shared_ptr<HandCapture> capture;
};

TEST_F(LiveRecordingViewTests, buttonsAreForARunningRecordingOnly) {
    for (const char* name : {"stop", "pause", "discard"}) {
        EXPECT_FALSE(item(name)->isEnabled()) << name;
    }
    record();
    for (const char* name : {"stop", "pause", "discard"}) {
        EXPECT_TRUE(item(name)->isEnabled()) << name;
    }
    QCoro::waitFor(model->recorder().stop());
    EXPECT_FALSE(item("stop")->isEnabled());
}

TEST_F(LiveRecordingViewTests, discard_asksFirst) {
    record();
    const auto folder = model.folder() / "call";
    click("discard");
    ASSERT_TRUE(waitUntil([&] { return isDialogOpen(); }));
    click("keep");
    ASSERT_TRUE(waitUntil([&] { return !isDialogOpen(); }));
    EXPECT_TRUE(call().isRecording());

    click("discard");
    ASSERT_TRUE(waitUntil([&] { return isDialogOpen(); }));
    click("confirmDiscard");
    ASSERT_TRUE(waitUntil([&] { return !call().isBusy(); }));
    EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(LiveRecordingViewTests, discard_aRecordingThatEndsMeanwhileIsKept) {
    record();
    click("discard");
    ASSERT_TRUE(waitUntil([&] { return isDialogOpen(); }));
    const auto result = QCoro::waitFor(model->recorder().stop());
    EXPECT_TRUE(waitUntil([&] { return !isDialogOpen(); }));
    call().discard();
    ASSERT_TRUE(result);
    EXPECT_TRUE(std::filesystem::exists(result->folder / "you.m4a"));
}

TEST_F(LiveRecordingViewTests, pause_restsThePen) {
    record();
    EXPECT_TRUE(waitUntil([&] { return call().ink()->end() > 2; }));
    click("pause");
    EXPECT_TRUE(call().isPaused());
    EXPECT_EQ(call().stateName(), "Paused");
    const auto written = call().ink()->end();
    const std::size_t ticks = model->recorder().samples().size();
    EXPECT_TRUE(waitUntil([&] { return model->recorder().samples().size() > ticks + 3; }));
    EXPECT_EQ(call().ink()->end(), written);
    click("pause");
    EXPECT_TRUE(waitUntil([&] { return call().ink()->end() > written; }));
}

TEST_F(LiveRecordingViewTests, pause_bringsMetersAndNibToRest) {
    record();
    call().ink()->append({.you = 0.9F, .them = 0.4F});
    const auto* trail = item("liveInk")->findChild<InkTrail*>();
    ASSERT_NE(trail, nullptr);
    ASSERT_EQ(trail->speaking(), "You are speaking");
    click("pause");
    EXPECT_EQ(call().youLevel(), 0);
    EXPECT_EQ(call().themLevel(), 0);
    EXPECT_EQ(trail->speaking(), "Quiet");
}

TEST_F(LiveRecordingViewTests, buttonsAreWholeHoweverNarrowThePageIs) {
    record();
    for (const int width : {800, 500, 350}) {
        view.resize(width, 600);
        for (const char* name : {"copyHeadsUp", "pause", "discard", "stop"}) {
            EXPECT_TRUE(waitUntil([&] {
                const QRectF box = item(name)->mapRectToScene(item(name)->boundingRect());
                return QRectF(0, 0, width, 600).contains(box) && box.width() >= item(name)->implicitWidth();
            })) << name
                << " at " << width;
        }
    }
}

TEST_F(LiveRecordingViewTests, theLineBeingSpokenIsInSight) {
    record();
    const auto* list = item("transcript");
    ASSERT_NE(list, nullptr);
    std::vector<Segment> lines;
    for (int turn = 0; turn < 12; ++turn) {
        lines.emplace_back(turn % 2 == 0 ? Speaker::you : Speaker::them, turn * 10, turn * 10 + 9, "That is said.");
    }
    std::string spoken;
    for (int rows = 0; rows < 8; ++rows) {
        spoken += " and so it goes on and on, row after row, until all of it has been said";
        call().transcript()->show(lines, {{Speaker::you, {Segment(Speaker::you, 120, 121, spoken)}}});
        EXPECT_TRUE(waitUntil([&] {
            const double end = list->property("contentHeight").toDouble() + list->property("originY").toDouble();
            const double seen = list->property("contentY").toDouble() + list->height();
            return list->property("count").toInt() == 13 && std::abs(end - seen) < 1;
        })) << rows;
    }
}

TEST_F(LiveRecordingViewTests, aSideThatIsMissingIsNamedInThisPlatformsWords) {
    record({Speaker::you});
    EXPECT_TRUE(call().you().isOn);
    EXPECT_EQ(call().you().detail, "microphone");
    EXPECT_FALSE(call().them().isOn);
    EXPECT_EQ(call().them().detail, "Recording your side only — the computer’s sound can’t be heard.");
    EXPECT_EQ(call().warning(), "");
    EXPECT_EQ(call().placeholderTitle(), "Recording your side.");
    EXPECT_EQ(call().placeholder(), "The transcript is written on this computer when you stop.");
}

TEST_F(LiveRecordingViewTests, aMissingModelIsNamedInPlaceOfTheTranscript) {
    model->lacksModel = true;
    record({Speaker::you, Speaker::them});
    EXPECT_EQ(call().placeholder(), "No speech model is installed for this language. The call is recorded, and can be "
                                    "written down once there is one.");
}

TEST_F(LiveRecordingViewTests, whatIsWrongStandsInTheWindowAndInThePill) {
    QQuickView pill(view.engine(), nullptr);
    pill.setSource(QUrl(QStringLiteral("qrc:/qt/qml/Varnic/LiveView/RecordingPill.qml")));
    const QQuickItem* inPill = within(pill.contentItem(), "warning");
    ASSERT_NE(inPill, nullptr);
    record({Speaker::you});
    const QString side = call().them().detail;
    EXPECT_EQ(inPill->property("text"), "");
    capture->said = "“A” delivers no sound — recording from “B” instead.";
    const QString said = QString::fromStdString(*capture->said);
    EXPECT_TRUE(waitUntil([&] { return call().warning() == said; }));
    EXPECT_EQ(item("warning")->property("text"), said);
    EXPECT_EQ(inPill->property("text"), said);
    EXPECT_EQ(call().them().detail, side) << "which side is missing is told as before";
    capture->said.reset();
    EXPECT_TRUE(waitUntil([&] { return call().warning().isEmpty(); }));
}

} // namespace
} // namespace varnic
