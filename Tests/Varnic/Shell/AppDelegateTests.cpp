#include "Varnic/Shell/AppDelegate.h"

#include "Varnic/Recording/RecordingController.h"
#include "Varnic/Shell/ShellTest.h"
#include "VarnicCore/Models/CallProblem.h"
#include "VarnicPlatform/Desktop/Logind.h"

#include <QTimer>
#include <gmock/gmock.h>

#include <fstream>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace varnic {
namespace {

using testing::ElementsAre;

class AppDelegateTest : public ShellTest {
protected:
    AppDelegateTest() {
        model->newNote("On disk");
        model->flushSaves();
        delegate.hooks.environment = [this](const char* name) {
            const auto found = environment.find(name);
            return found == environment.end() ? std::nullopt : std::optional(found->second);
        };
        delegate.hooks.quit = [this] { steps.emplace_back("quit"); };
        model->desktop.applyHotkey = [this] { steps.emplace_back("hotkey"); };
        model->desktop.activate = [this] { steps.emplace_back("window"); };
    }

    void launch() { QCoro::waitFor(delegate.applicationDidFinishLaunching()); }

    [[nodiscard]] bool isStored(const Uuid& id) const {
        return LibraryStore(model.folder() / "Library").load(id, currentDate()).has_value();
    }

    void expectOnDiskAfterLogout(const Uuid& call) {
        delegate.finishBeforeLogout();
        EXPECT_FALSE(isBusy(model->recorder().state()));
        EXPECT_TRUE(isStored(call));
    }

    std::map<std::string, std::string> environment;
    std::vector<std::string> steps;
    AppDelegate delegate{*model};
};

TEST_F(AppDelegateTest, launch_takesItsStepsInOrder) {
    struct Case {
        std::map<std::string, std::string> environment;
        std::vector<std::string> steps;
        std::size_t notes;
    };

    const std::vector<Case> cases{
        {{}, {"kit", "hotkey"}, 1},
        {{{"VARNIC_DEMO", "1"}}, {"kit", "demo"}, 0},
        {{{"VARNIC_SNAPSHOT_DIR", "/tmp/x"}, {"VARNIC_DEMO", "1"}}, {"kit", "snapshots /tmp/x", "quit"}, 0},
        {{{"VARNIC_SELFTEST", "1"}, {"VARNIC_SNAPSHOT_DIR", "/tmp/x"}}, {"kit", "selftest"}, 0}};
    // The fixture's delegate holds on to its model.
    ScratchModel own(model.folder() / "Library");
    for (const Case& one : cases) {
        own.restart();
        steps.clear();
        environment = one.environment;
        AppDelegate fresh(*own);
        fresh.hooks = {.startKit = [this] { steps.emplace_back("kit"); },
                       .runSelfTest = [this]() -> QCoro::Task<> {
                           steps.emplace_back("selftest");
                           co_return;
                       },
                       .runSnapshots = [this](std::filesystem::path folder) -> QCoro::Task<> {
                           steps.push_back("snapshots " + folder.string());
                           co_return;
                       },
                       .loadDemo =
                           [this](AppModel& demo) {
                               demo.isDemo = true;
                               steps.emplace_back("demo");
                           },
                       .environment = delegate.hooks.environment,
                       .quit = delegate.hooks.quit};
        own->desktop.applyHotkey = model->desktop.applyHotkey;
        QCoro::waitFor(fresh.applicationDidFinishLaunching());
        EXPECT_EQ(steps, one.steps);
        EXPECT_EQ(own->notes().size(), one.notes);
    }
}

TEST_F(AppDelegateTest, requestsBeforeTheLibraryIsThere_wait) {
    delegate.perform({.kind = Request::Kind::activate, .files = {}, .activationToken = "early"});
    delegate.perform({.kind = Request::Kind::toggleRecording, .files = {}, .activationToken = {}});
    EXPECT_THAT(steps, ElementsAre());
    launch();
    EXPECT_THAT(steps, ElementsAre("hotkey", "window"));
    EXPECT_EQ(qEnvironmentVariable("XDG_ACTIVATION_TOKEN"), "early");
    EXPECT_TRUE(waitUntil([this] { return isRecording(model->recorder().state()); }));
    model->discardRecording();
    qunsetenv("XDG_ACTIVATION_TOKEN");
}

TEST_F(AppDelegateTest, actionsOfTheDesktop_doWhatTheySay) {
    launch();
    const Uuid note = model->newNote("Mine");
    steps.clear();
    delegate.perform({.kind = Request::Kind::newNote});
    EXPECT_THAT(steps, ElementsAre("window"));
    EXPECT_NE(model->selection.value(), note);
    delegate.perform({.kind = Request::Kind::openAddress, .address = "varnic:" + note.text()});
    EXPECT_THAT(steps, ElementsAre("window", "window"));
    EXPECT_EQ(model->selection.value(), note);
    model->section = LibrarySection::todos;
    model->query = "something";
    delegate.perform({.kind = Request::Kind::openLibrary});
    EXPECT_EQ(steps.size(), 3U);
    EXPECT_EQ(model->section.value(), LibrarySection::all);
    EXPECT_EQ(model->query.value(), "");
    delegate.perform({.kind = Request::Kind::recordCall});
    EXPECT_TRUE(waitUntil([this] { return isRecording(model->recorder().state()); }));
    EXPECT_EQ(steps.size(), 3U) << "nothing comes in front of the call";
    delegate.perform({.kind = Request::Kind::recordCall});
    EXPECT_TRUE(isRecording(model->recorder().state())) << "it goes on";
    EXPECT_EQ(steps.size(), 4U);
    model->discardRecording();
}

TEST_F(AppDelegateTest, quitWhenIdle_savesAndEndsAtOnce) {
    launch();
    const Uuid note = model->notes().front().id;
    model->update(note, false, [](Note& edited) { edited.title = "Just typed"; });
    delegate.terminate();
    EXPECT_EQ(steps.back(), "quit");
    EXPECT_FALSE(model->saveProblem(note));
    LibraryStore store(model.folder() / "Library");
    EXPECT_EQ(store.loadAll(currentDate()).front().title, "Just typed");
}

/// The library is out of reach with an edit that is not in it.
class UnsavedQuitTest : public AppDelegateTest {
protected:
    UnsavedQuitTest() {
        launch();
        steps.clear();
        note = model->notes().front().id;
        model.takeNotesAway();
        model->update(note, false, [](Note& edited) { edited.title = "Typed"; });
        delegate.hooks.ask = [this](QuitQuestion question) -> QCoro::Task<QuitQuestion::Answer> {
            steps.push_back(question.title);
            co_return answer();
        };
        model->desktop.chooseFolder = [this](std::string) -> QCoro::Task<Desktop::File> { co_return chosen; };
    }

    Uuid note;
    /// The user's.
    std::function<QuitQuestion::Answer()> answer = [] { return QuitQuestion::Answer::stay; };
    Desktop::File chosen;
};

TEST_F(UnsavedQuitTest, stay_goesOnAndAsksAgainAtTheNextQuit) {
    delegate.terminate();
    delegate.terminate();
    EXPECT_THAT(steps, ElementsAre("Couldn’t save “Typed”", "Couldn’t save “Typed”"));
    model.putNotesBack();
    delegate.terminate();
    EXPECT_EQ(steps.back(), "quit");
    EXPECT_EQ(LibraryStore(model.folder() / "Library").load(note, currentDate())->title, "Typed");
}

TEST_F(UnsavedQuitTest, tryAgain_untilItIsSaved) {
    int questions = 0;
    answer = [&] {
        if (++questions == 2) {
            model.putNotesBack();
        }
        return QuitQuestion::Answer::tryAgain;
    };
    delegate.terminate();
    EXPECT_THAT(steps, ElementsAre("Couldn’t save “Typed”", "Couldn’t save “Typed”", "quit"));
    EXPECT_THAT(model->unsavedNotes(), testing::IsEmpty());
}

TEST_F(UnsavedQuitTest, saveCopies_quitsOnceTheyAreThere) {
    std::ofstream(model.folder() / "Typed.md") << "mine";
    answer = [&, questions = std::size_t(0)]() mutable {
        // Nothing is chosen, then what no file can be written to, then a folder.
        const std::vector<Desktop::File> folders{std::nullopt, model.notes(), model.folder()};
        chosen = folders.at(questions++);
        return QuitQuestion::Answer::saveCopies;
    };
    delegate.terminate();
    EXPECT_EQ(steps.size(), 4U);
    EXPECT_EQ(steps.back(), "quit");
    std::size_t copies = 0;
    for (const auto& entry : std::filesystem::directory_iterator(model.folder())) {
        copies += entry.path().extension() == ".md" ? 1U : 0U;
    }
    EXPECT_EQ(copies, 2U) << "beside what was there";
}

TEST_F(UnsavedQuitTest, politeKillAndLogout_askNobody) {
    delegate.finishBeforeLogout();
    EXPECT_THAT(steps, ElementsAre());
    delegate.terminate(AppDelegate::Occasion::system);
    EXPECT_THAT(steps, ElementsAre("quit"));
    EXPECT_TRUE(model->isSpared(note)) << "for the next start";
}

TEST_F(UnsavedQuitTest, whileRecording_asksOnceTheCallIsClosed) {
    answer = [] { return QuitQuestion::Answer::quitAnyway; };
    ASSERT_NO_FATAL_FAILURE(record());
    delegate.terminate();
    ASSERT_TRUE(waitUntil([this] { return !steps.empty() && steps.back() == "quit"; }));
    EXPECT_THAT(steps, ElementsAre("Couldn’t save 2 notes", "quit"));
}

TEST_F(AppDelegateTest, quitWhileRecording_filesTheCallFirst) {
    launch();
    ASSERT_NO_FATAL_FAILURE(record());
    const Uuid call = model->recorder().noteID();
    EXPECT_EQ(delegate.applicationShouldTerminate(), AppDelegate::TerminateReply::later);
    delegate.terminate(); // An impatient user.
    EXPECT_THAT(steps, ElementsAre("hotkey"));
    ASSERT_TRUE(waitUntil([this] { return steps.size() == 2; }));
    EXPECT_THAT(steps, ElementsAre("hotkey", "quit"));
    const auto filed = LibraryStore(model.folder() / "Library").load(call, currentDate());
    ASSERT_TRUE(filed);
    EXPECT_EQ(filed->call->problem, quitProblem);
    EXPECT_TRUE(std::filesystem::exists(model->audioFolder(call) / "you.m4a"));
}

TEST_F(AppDelegateTest, logout_returnsWithTheCallOnDisk) {
    launch();
    for (const bool isStopping : {false, true}) {
        ASSERT_NO_FATAL_FAILURE(record());
        if (isStopping) {
            model->stopRecording();
        }
        expectOnDiskAfterLogout(model->recorder().noteID());
    }
    // And while it starts.
    model->makeCapture = [this] {
        capture = std::make_shared<HandCapture>(std::vector{Speaker::you, Speaker::them});
        capture->isOpening = true;
        return capture;
    };
    model->toggleRecording();
    ASSERT_TRUE(waitUntil([this] { return isBusy(model->recorder().state()); }));
    const Uuid call = model->recorder().noteID();
    QTimer::singleShot(0, [this] {
        capture->isOpening = false;
        capture->isOpening.notify_all();
    });
    expectOnDiskAfterLogout(call);
    EXPECT_THAT(steps, ElementsAre("hotkey"));
}

TEST_F(AppDelegateTest, sleepWhileStarting_endsTheRecordingToo) {
    launch();
    bool isDone = false;
    delegate.systemWillSleep([&isDone] { isDone = true; });
    EXPECT_TRUE(isDone) << "nothing to wait for";
    model->toggleRecording();
    ASSERT_TRUE(waitUntil([this] { return isBusy(model->recorder().state()); }));
    isDone = false;
    delegate.systemWillSleep([&isDone] { isDone = true; });
    ASSERT_TRUE(waitUntil([&isDone] { return isDone; }));
    EXPECT_FALSE(isBusy(model->recorder().state()));
}

TEST_F(AppDelegateTest, logindsSleep_waitsForTheNoteOfARecording) {
    DesktopEvents events;
    Logind logind(events);
    const auto comesTo = [&events](const auto& condition) {
        return waitUntil([&] {
            events.dispatch();
            return condition();
        });
    };
    launch();
    ASSERT_NO_FATAL_FAILURE(record());
    const Uuid call = model->recorder().noteID();
    ASSERT_TRUE(comesTo([&logind] { return logind.isHeld(); }));
    logind.prepareForSleep(true);
    ASSERT_TRUE(comesTo([&logind] { return !logind.isHeld(); }));
    EXPECT_TRUE(isStored(call));
    ASSERT_TRUE(waitUntil([this] { return model->processing.value().empty(); }));
    EXPECT_FALSE(model->note(call)->call->segments.empty());
}

} // namespace
} // namespace varnic
