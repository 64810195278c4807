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
};

struct Menu {
    std::string title;
    std::vector<MenuEntry> entries;
};

/// What the menus ask of the program beside its model.
struct MenuActions {
    std::function<void()> closeWindow;
    /// The shut-down in its order, see AppDelegate::terminate.
    std::function<void()> quit;
};

/// The menus in their order. Texts change with `RecordingController::stateChanged`, marks with
/// `AppModel::showTranscript`. The model must outlive them.
std::vector<Menu> menus(AppModel& model, const MenuActions& actions);

/// The name of a list of the sidebar.
std::string_view title(LibrarySection section);

/// Opens a list of the sidebar.
void goTo(AppModel& model, LibrarySection section);

} // namespace varnic
