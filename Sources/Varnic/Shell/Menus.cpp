#include "Varnic/Shell/Menus.h"

#include "Varnic/Recording/RecordingController.h"
#include "VarnicCore/Pipeline/SessionState.h"

#include <fmt/format.h>

namespace varnic {

namespace {

std::function<std::string()> always(std::string text) {
    return [text = std::move(text)] { return text; };
}

// What stands in more than one menu.

MenuEntry newNote(AppModel& model) {
    return {.text = always("New Note"), .shortcut = "Ctrl+N", .perform = [&model] {
                model.newNote();
                model.desktop.activate();
            }};
}

MenuEntry recordCall(AppModel& model) {
    return {
        .text = [&model] { return isBusy(model.recorder().state()) ? "Stop Recording" : "Record Call"; },
        .shortcut = "Ctrl+Shift+R",
        .perform = [&model] { model.toggleRecording(); },
        .isEnabled =
            [&model] { return SessionLogic::toggle(model.recorder().state(), true) != SessionLogic::Action::none; }};
}

MenuEntry settings(AppModel& model) {
    return {.text = always("Settings…"), .shortcut = "Ctrl+,", .perform = [&model] {
                model.desktop.openSettings(SettingsRow::beginning);
            }};
}

MenuEntry quitEntry(const std::function<void()>& quit) {
    return {.text = always("Quit"), .shortcut = "Ctrl+Q", .perform = quit};
}

MenuEntry checkForUpdates(AppModel& model) {
    return {.text = always("Check for Updates…"),
            .shortcut = "",
            .perform = [&model] { model.desktop.checkForUpdates(); },
            .isEnabled = [&model] { return model.desktop.checkForUpdates != nullptr; },
            .beginsGroup = true};
}

Menu fileMenu(AppModel& model, const std::function<void()>& quit) {
    return {"File",
            {newNote(model),
             {.text = always("Import Recording…"),
              .shortcut = "Ctrl+Shift+I",
              .perform = [&model] { model.chooseImport(); }},
             settings(model),
             {.text = always("Close Window"),
              .shortcut = "Ctrl+W",
              .perform = [&model] { model.desktop.closeWindow(); },
              .beginsGroup = true},
             checkForUpdates(model),
             quitEntry(quit)}};
}

Menu callMenu(AppModel& model) {
    return {
        "Call",
        {
            recordCall(model),
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

std::vector<MenuEntry> trayMenu(AppModel& model, const std::function<void()>& quit) {
    return {recordCall(model),
            newNote(model),
            {.text = always("Open Varnic"),
             .shortcut = "",
             .perform = [&model] { model.desktop.activate(); },
             .beginsGroup = true},
            settings(model),
            quitEntry(quit)};
}

} // namespace

Menus menus(AppModel& model, const std::function<void()>& quit) {
    return {.window = {fileMenu(model, quit), callMenu(model), goMenu(model)}, .tray = trayMenu(model, quit)};
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
