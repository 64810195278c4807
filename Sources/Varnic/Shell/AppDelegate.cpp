#include "Varnic/Shell/AppDelegate.h"

#include "Varnic/Recording/RecordingController.h"
#include "Varnic/Shell/Activation.h"
#include "Varnic/Shell/HotkeyKeys.h"
#include "VarnicCore/Pipeline/SessionState.h"
#include "VarnicPlatform/Desktop/FrontProgram.h"
#include "VarnicPlatform/Desktop/RunningPrograms.h"

#include <QCoreApplication>
#include <QPointer>

#include <fmt/format.h>

#include <cstdlib>
#include <utility>

namespace varnic {

namespace {

std::optional<std::string> environmentVariable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

} // namespace

AppDelegate::AppDelegate(AppModel& model, QObject* parent)
    : QObject(parent), model_(model), menus_(varnic::menus(model, [this] { terminateSoon(); })), pill_(model),
      notifications_(model), eventsNotifier_(events_.descriptor(), QSocketNotifier::Read),
      loginStart_(events_, model.settings) {
    hooks.environment = environmentVariable;
    // Not quit(), which a window that is merely hidden when it is closed could refuse.
    hooks.quit = [] { QCoreApplication::exit(); };
    model.desktop.refreshPill = [this] { pill_.refresh(); };
    model.desktop.applyHotkey = [this] { applyHotkey(); };
    model.desktop.runningPrograms = [] { return RunningPrograms::identifiers(); };
    model.desktop.frontProgram = [] { return FrontProgram::identifier(); };
    connect(&eventsNotifier_, &QSocketNotifier::activated, this, [this] { events_.dispatch(); });
}

AppDelegate::~AppDelegate() {
    model_.desktop.refreshPill = [] {};
    model_.desktop.applyHotkey = [] {};
}

QCoro::Task<> AppDelegate::applicationDidFinishLaunching() {
    const QPointer self(this);
    hooks.startKit();
    if (hooks.environment("VARNIC_SELFTEST")) {
        co_await hooks.runSelfTest();
        co_return;
    }
    if (const auto folder = hooks.environment("VARNIC_SNAPSHOT_DIR")) {
        auto snapshots = hooks.runSnapshots(*folder);
        co_await snapshots;
        if (self) {
            terminate();
        }
        co_return;
    }
    if (hooks.environment("VARNIC_DEMO")) {
        hooks.loadDemo(model_);
    } else {
        co_await model_.load();
    }
    if (!self) {
        co_return;
    }
    if (!model_.isDemo) {
        model_.desktop.applyHotkey();
    }
    observeSleep();
    isLaunched_ = true;
    for (const Request& request : std::exchange(waiting_, {})) {
        carryOut(request);
    }
}

void AppDelegate::perform(const Request& request) {
    if (isLaunched_) {
        carryOut(request);
    } else {
        waiting_.push_back(request);
    }
}

void AppDelegate::carryOut(const Request& request) {
    useActivationToken(request.activationToken);
    switch (request.kind) {
    case Request::Kind::activate:
        model_.desktop.activate();
        break;
    case Request::Kind::importFiles:
        model_.desktop.activate();
        model_.importFiles(request.files);
        break;
    case Request::Kind::openAddress:
        model_.desktop.activate();
        model_.openAddress(request.address);
        break;
    case Request::Kind::openLibrary:
        model_.desktop.activate();
        goTo(model_, LibrarySection::all);
        break;
    case Request::Kind::newNote:
        model_.newNote();
        model_.desktop.activate();
        break;
    case Request::Kind::recordCall:
        if (isBusy(model_.recorder().state())) {
            model_.desktop.activate();
        } else {
            model_.toggleRecording();
        }
        break;
    case Request::Kind::toggleRecording:
        model_.toggleRecording();
        break;
    case Request::Kind::background:
        break;
    }
}

AppDelegate::TerminateReply AppDelegate::applicationShouldTerminate(Occasion occasion) {
    mustEnd_ = mustEnd_ || occasion == Occasion::system;
    model_.flushSaves();
    if (isClosing_) {
        return TerminateReply::later;
    }
    if (isRecording(model_.recorder().state())) {
        isClosing_ = true;
        closeRecordingAndQuit();
        return TerminateReply::later;
    }
    if (mustEnd_ || model_.unsavedNotes().empty()) {
        return TerminateReply::now;
    }
    if (!std::exchange(isAsking_, true)) {
        askAndQuit();
    }
    return TerminateReply::later;
}

QCoro::Task<> AppDelegate::closeRecordingAndQuit() {
    const QPointer self(this);
    co_await model_.stopRecordingForQuit();
    if (self) {
        isClosing_ = false;
        terminate();
    }
}

/// Goes on asking until all is on disk or somewhere else, or the user takes the loss or stays.
QCoro::Task<> AppDelegate::askAndQuit() {
    const QPointer self(this);
    while (!mustEnd_ && !model_.unsavedNotes().empty()) {
        auto asking = hooks.ask(QuitQuestion::about(model_));
        const QuitQuestion::Answer answer = co_await asking;
        if (!self) {
            co_return;
        }
        if (answer == QuitQuestion::Answer::stay) {
            isAsking_ = false;
            co_return;
        }
        if (answer == QuitQuestion::Answer::tryAgain) {
            model_.flushSaves();
        } else if (answer == QuitQuestion::Answer::quitAnyway) {
            mustEnd_ = true;
        } else {
            auto saving = model_.saveCopiesElsewhere();
            const bool isSaved = co_await saving;
            if (!self) {
                co_return;
            }
            mustEnd_ = mustEnd_ || isSaved;
        }
    }
    isAsking_ = false;
    // A recording may have begun meanwhile.
    terminate();
}

void AppDelegate::terminate(Occasion occasion) {
    if (applicationShouldTerminate(occasion) == TerminateReply::now) {
        hooks.quit();
    }
}

/// Once the menu that asked for it is closed.
void AppDelegate::terminateSoon() {
    QMetaObject::invokeMethod(this, [this] { terminate(); }, Qt::QueuedConnection);
}

void AppDelegate::finishBeforeLogout() {
    const RecordingController& recorder = model_.recorder();
    // A start or a stop that is under way comes to its end first.
    while (isBusy(recorder.state()) && !isRecording(recorder.state())) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    QCoro::waitFor(model_.stopRecordingForQuit());
    model_.flushSaves();
}

void AppDelegate::applyHotkey() {
    if (!hotkey_) {
        hotkey_ = std::make_unique<Hotkey>(events_);
        hotkey_->statusChanged = [this](const Hotkey::Status& status) { takeHotkeyStatus(status); };
    }
    std::optional<KeyCombination> combination;
    if (model_.settings.hotkeyEnabled.value() && !isHotkeyPaused_) {
        combination = keys(model_.settings);
    }
    hotkey_->registerCombination(combination, [this](const std::string& activationToken) {
        QMetaObject::invokeMethod(
            this, [this, activationToken] { carryOut({Request::Kind::toggleRecording, {}, activationToken}); },
            Qt::QueuedConnection);
    });
}

void AppDelegate::setHotkeyPaused(bool isPaused) {
    if (std::exchange(isHotkeyPaused_, isPaused) != isPaused && hotkey_) {
        model_.desktop.applyHotkey();
    }
}

void AppDelegate::takeHotkeyStatus(const Hotkey::Status& status) {
    hotkeyNote = status.message;
    hotkeyState = status.state;
    if (status.state == Hotkey::State::taken) {
        model_.flash({.text = fmt::format("{} is taken by another program", keys(model_.settings).title()),
                      .symbol = "exclamationmark.triangle"});
    }
}

void AppDelegate::observeSleep() {
    sleepWatch_ = std::make_unique<SleepWatch>(events_, [this](std::function<void()> done) {
        QMetaObject::invokeMethod(
            this, [this, done = std::move(done)]() mutable { systemWillSleep(std::move(done)); }, Qt::QueuedConnection);
    });
    const auto follow = [this] { sleepWatch_->setDelaying(isBusy(model_.recorder().state())); };
    connect(&model_.recorder(), &RecordingController::stateChanged, this, follow);
    follow();
}

void AppDelegate::systemWillSleep(std::function<void()> done) {
    sleepDone_ = std::move(done);
    connect(&model_.recorder(), &RecordingController::stateChanged, this, &AppDelegate::goOnToSleep,
            Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection));
    goOnToSleep();
}

void AppDelegate::goOnToSleep() {
    if (!sleepDone_) {
        return;
    }
    const SessionState& state = model_.recorder().state();
    if (isRecording(state)) {
        model_.stopRecording();
    } else if (!isBusy(state)) {
        // The flow that stopped the recording has handed its note over to be saved.
        model_.flushSaves();
        std::exchange(sleepDone_, nullptr)();
    }
}

} // namespace varnic
