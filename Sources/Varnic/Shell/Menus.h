#pragma once

#include "Varnic/AppModel/AppModel.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace varnic {

/// An entry of the menus. What may change is a function and holds for the moment of the call.
struct MenuEntry {
    std::function<std::string()> text;
    /// As QKeySequence's portable text has it, such as "Ctrl+Shift+I"; empty for none.
    std::string shortcut;
    std::function<void()> perform;
    std::function<bool()> isEnabled = [] { return true; };
    /// Whether the entry has a mark; null for an entry that never has one.
    std::function<bool()> isChecked = nullptr;
    /// A line stands before the entry.
    bool beginsGroup = false;
    /// The page that it is about listens to the shortcut itself, and only while it is shown.
    bool isPagesShortcut = false;
};

struct Menu {
    std::string title;
    std::vector<MenuEntry> entries;
};

/// All menus of the program. Texts and what is enabled change with `RecordingController::stateChanged`, marks with
/// `AppModel::showTranscript`.
struct Menus {
    /// Those of the main window, in their order.
    std::vector<Menu> window;
    /// That of the tray icon, which shows neither marks nor shortcuts.
    std::vector<MenuEntry> tray;
};

/// `quit` is the shut-down in its order, see AppDelegate::terminate. The model must outlive the menus.
Menus menus(AppModel& model, const std::function<void()>& quit);

/// The name of a list of the sidebar.
std::string_view title(LibrarySection section);

/// Opens a list of the sidebar.
void goTo(AppModel& model, LibrarySection section);

} // namespace varnic
