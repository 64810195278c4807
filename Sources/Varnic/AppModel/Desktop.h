#pragma once

#include "VarnicCore/Export/ExportFormat.h"

#include <QCoro/QCoroTask>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace varnic {

/// What the settings window can be opened at.
enum class SettingsRow {
    /// The window as it was last.
    beginning,
    microphone,
    /// The sound of the other side.
    systemAudio,
    speech,
    language,
    library,
    hotkey,
    /// Whether AI summaries are offered.
    summaries,
    provider,
    /// The key of the AI provider.
    key,
    updates
};

/// What the flows ask of the desktop. Each does nothing unless the program with a screen, or a test, fills it in.
/// Called on the main thread.
struct Desktop {
    using File = std::optional<std::filesystem::path>;

    /// Brings the program's window to the front.
    std::function<void()> activate = [] {};
    /// Closes the program's window, which may leave the program in the tray.
    std::function<void()> closeWindow = [] {};
    /// Plays a short sound by its name: "Tink" or "Pop".
    std::function<void(const std::string& name)> playSound = [](const std::string&) {};
    /// Puts a text on the clipboard in place of what is there.
    std::function<void(const std::string& text)> copyText = [](const std::string&) {};
    std::function<void(const std::string& url)> openURL = [](const std::string&) {};
    /// Shows the settings window, with this row in view and marked.
    std::function<void(SettingsRow row)> openSettings = [](SettingsRow) {};
    /// Looks for a newer version, in a window of its own. Null where nothing is known of newer versions.
    std::function<void()> checkForUpdates = nullptr;
    /// Shows or hides the floating pill, whichever is right now.
    std::function<void()> refreshPill = [] {};
    /// Registers the global hotkey anew, from the settings.
    std::function<void()> applyHotkey = [] {};
    /// Lets the user pick one recording; nothing when they don't.
    std::function<QCoro::Task<File>(std::string message)> chooseRecording = [](std::string) -> QCoro::Task<File> {
        co_return std::nullopt;
    };
    /// Lets the user say where to save a file of this suggested name.
    std::function<QCoro::Task<File>(std::string fileName)> chooseDestination = [](std::string) -> QCoro::Task<File> {
        co_return std::nullopt;
    };
    /// Lets the user pick a folder; nothing when they don't.
    std::function<QCoro::Task<File>(std::string message)> chooseFolder = [](std::string) -> QCoro::Task<File> {
        co_return std::nullopt;
    };
    /// The identifiers of running calling applications and browsers, and of the program in front.
    std::function<std::vector<std::string>()> runningPrograms = [] { return std::vector<std::string>(); };
    std::function<std::optional<std::string>()> frontProgram = []() -> std::optional<std::string> {
        return std::nullopt;
    };
};

} // namespace varnic
