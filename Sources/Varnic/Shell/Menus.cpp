#include "Varnic/Shell/Menus.h"

#include "Varnic/Recording/RecordingController.h"
#include "VarnicCore/Pipeline/SessionState.h"

#include <fmt/format.h>

namespace varnic {

namespace {

std::function<std::string()> always(std::string text) {
    return [text = std::move(text)] { return text; };
}

Menu fileMenu(AppModel& model, const MenuActions& actions) {
    return {
        "File",
        {
            {.text = always("New Note"), .shortcut = "Ctrl+N", .perform = [&model] { model.newNote(); }},
            {.text = always("Import Recording…"),
             .shortcut = "Ctrl+Shift+I",
             .perform = [&model] { model.chooseImport(); }},
            {.text = always("Close Window"), .shortcut = "Ctrl+W", .perform = actions.closeWindow, .beginsGroup = true},
            {.text = always("Quit"), .shortcut = "Ctrl+Q", .perform = actions.quit},
        }};
}

Menu callMenu(AppModel& model) {
    return {
        "Call",
        {
            {.text = [&model] { return isBusy(model.recorder().state()) ? "Stop Recording" : "Record Call"; },
             .shortcut = "Ctrl+Shift+R",
             .perform = [&model] { model.toggleRecording(); },
             .isEnabled =
                 [&model] {
                     return SessionLogic::toggle(model.recorder().state(), true) != SessionLogic::Action::none;
                 }},
            {.text = always("Copy Heads-up Message"), .shortcut = "", .perform = [&model] { model.copyHeadsUp(); }},
            {.text = always("Show Transcript"),
             .shortcut = "",
             .perform = [&model] { model.showTranscript = !model.showTranscript.value(); },
             .isChecked = [&model] { return model.showTranscript.value(); }},
            {.text = always("Recording Permissions…"), .shortcut = "", .perform = [&model] { model.showSetup = true; }},
        }};
}

Menu goMenu(AppModel& model) {
    Menu menu{"Go", {}};
    for (const LibrarySection section : allLibrarySections) {
        menu.entries.push_back({.text = always(std::string(title(section))),
                                .shortcut = fmt::format("Ctrl+{}", menu.entries.size() + 1),
                                .perform = [&model, section] { goTo(model, section); }});
    }
    return menu;
}

} // namespace

std::vector<Menu> menus(AppModel& model, const MenuActions& actions) {
    return {fileMenu(model, actions), callMenu(model), goMenu(model)};
}

std::string_view title(LibrarySection section) {
    switch (section) {
    case LibrarySection::all:
        return "All Notes";
    case LibrarySection::calls:
        return "Calls";
    case LibrarySection::notes:
        return "Notes";
    case LibrarySection::todos:
        return "To-dos";
    case LibrarySection::cards:
        return "Flashcards";
    }
    return {};
}

void goTo(AppModel& model, LibrarySection section) {
    model.query = std::string();
    model.section = section;
    model.selectFirstIfNeeded();
}

} // namespace varnic
