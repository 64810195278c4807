#include "Varnic/Snapshot/Shots.h"

#include "Varnic/Snapshot/Scenes.h"

#include <array>

namespace varnic {

namespace {

constexpr auto atRest = [](AppModel&) {};

constexpr Shot::MainWindow mainWindow;
constexpr Shot::View pill{"LiveView/RecordingPill.qml", {304, 48}};
constexpr Shot::View menuBarWhileRecording{"SettingsViews/MenuBarView.qml", {300, 330}};
constexpr Shot::View menuBar{"SettingsViews/MenuBarView.qml", {300, 290}};
constexpr Shot::View consent{"SettingsViews/ConsentSheet.qml", {500, 470}};
constexpr Shot::View setup{"SettingsViews/SetupSheet.qml", {540, 430}};
constexpr Shot::Settings general{0};
constexpr Shot::Settings recording{1};
constexpr Shot::Settings summaries{2};
constexpr Shot::Settings about{3};

constexpr std::array shots{
    Shot{"call", mainWindow, Scenes::call},
    Shot{"call-no-transcript", mainWindow, Scenes::callWithoutTranscript},
    Shot{"call-ai", mainWindow, Scenes::callByAI},
    Shot{"call-ai-offer", mainWindow, Scenes::offerOfAI},
    Shot{"call-ai-error", mainWindow, Scenes::failureOfAI},
    Shot{"note-cards-table", mainWindow, Scenes::cardsAndTable},
    Shot{"note-todos", mainWindow, Scenes::todoNote},
    Shot{"note-venues", mainWindow, Scenes::venues},
    Shot{"calls", mainWindow, Scenes::calls},
    Shot{"todos", mainWindow, Scenes::todos},
    Shot{"flashcards", mainWindow, Scenes::decks},
    Shot{"search", mainWindow, Scenes::search},
    Shot{"search-empty", mainWindow, Scenes::searchInVain},
    Shot{"call-processing", mainWindow, Scenes::processing},
    Shot{"call-problem", mainWindow, Scenes::problem},
    Shot{"live", mainWindow, Scenes::live},
    Shot{"live-start", mainWindow, Scenes::liveStart},
    Shot{"pill", pill, Scenes::live},
    Shot{"menubar-recording", menuBarWhileRecording, Scenes::live},
    Shot{"menubar", menuBar, atRest},
    Shot{"consent", consent, atRest},
    Shot{"setup", setup, Scenes::missingSound},
    Shot{"study", mainWindow, Scenes::study},
    Shot{"settings-general", general, atRest},
    Shot{"settings-recording", recording, atRest},
    Shot{"settings-summaries-off", summaries, atRest},
    Shot{"settings-summaries", summaries, Scenes::offerOfAI},
    Shot{"settings-summaries-local", summaries, Scenes::localAI},
    Shot{"settings-about", about, atRest},
    Shot{"empty", mainWindow, Scenes::empty},
    Shot{"todos-empty", mainWindow, Scenes::noTodos},
    Shot{"cards-empty", mainWindow, Scenes::noDecks},
    Shot{"call-min", mainWindow, Scenes::callAndTranscript},
    Shot{"note-min", mainWindow, Scenes::cards},
};

} // namespace

std::span<const Shot> allShots() {
    return shots;
}

} // namespace varnic
