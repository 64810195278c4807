#include "Varnic/SelfTest/StandIns.h"

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/SelfTest/Checks.h"
#include "Varnic/Shell/AppDelegate.h"
#include "VarnicPlatform/Capture/LiveCapture.h"
#include "VarnicPlatform/Capture/Permissions.h"
#include "VarnicPlatform/Capture/SoundDevices.h"

#include <QClipboard>
#include <QGuiApplication>

#include <optional>

namespace varnic {

namespace {

QCoro::Task<Desktop::File> nothingChosen(std::string /*question*/) {
    co_return std::nullopt;
}

/// A platform without windows has a clipboard that nobody else writes to, and doesn't tell whose it is.
bool isOurs(const QClipboard& clipboard) {
    return clipboard.ownsClipboard() || QGuiApplication::platformName() == "offscreen";
}

} // namespace

StandIns::StandIns(AppModel& model, AppDelegate& shell) {
    countClipboardChanges();
    shell.setHotkeyPaused(true);
    shell.hooks.ask = [](QuitQuestion) -> QCoro::Task<QuitQuestion::Answer> {
        co_return QuitQuestion::Answer::quitAnyway;
    };
    // What this machine lacks is no matter of the program's.
    shell.hooks.desktopParts = [] { return DesktopParts(); };
    // Nothing is told outside the program's window then.
    shell.notifications().isWindowInFront = [] { return true; };
    Desktop& desktop = model.desktop;
    desktop.applyHotkey = [] {};
    desktop.playSound = [](const std::string&) {};
    desktop.openSettings = [](SettingsRow) {};
    desktop.chooseRecording = nothingChosen;
    desktop.chooseDestination = nothingChosen;
    desktop.chooseFolder = nothingChosen;
    desktop.runningPrograms = [] { return std::vector<std::string>(); };
    desktop.frontProgram = []() -> std::optional<std::string> { return std::nullopt; };
    desktop.copyText = [world = world_](const std::string& text) { world->pasteboard = text; };
    desktop.openURL = [world = world_](const std::string& url) { world->opened.push_back(url); };
    model.keys = std::make_shared<MemoryKeyStore>();
    model.transport = ai_;
    SoundDevices::override = {.isReachable = true,
                              .hasSound = true,
                              .microphones = {{.name = "microphone", .label = "Built-in Microphone"}},
                              .outputs = {{.name = "output", .label = "Built-in Speakers"}}};
    Permissions::override = {PermissionState::granted, PermissionState::granted, PermissionState::granted};
}

/// Those by this program, whatever part of it: others may well copy something meanwhile.
void StandIns::countClipboardChanges() {
    const QClipboard* clipboard = QGuiApplication::clipboard();
    connect(clipboard, &QClipboard::dataChanged, this, [this, clipboard] { clipboardChanges_ += isOurs(*clipboard); });
}

void StandIns::closingChecks(Checks& checks) const {
    checks.check(clipboardChanges_ == 0, "the general pasteboard was never touched");
    checks.check(LiveCapture::startCount() == 0, "the real microphone/screen capture was never started");
}

} // namespace varnic
