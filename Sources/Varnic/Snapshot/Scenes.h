#pragma once

namespace varnic {

class AppModel;

/// States of the program for its pictures. Main thread; the model is that of a demonstration.
namespace Scenes {

/// The invented library in an idle program. The others go on from here.
void rest(AppModel& model);

/// A finished call.
void call(AppModel& model);
void callAndTranscript(AppModel& model);
/// Nothing is known of what was said.
void callWithoutTranscript(AppModel& model);
/// Its summary was made by an AI.
void callByAI(AppModel& model);
/// An AI may be asked for a summary.
void offerOfAI(AppModel& model);
void failureOfAI(AppModel& model);
/// An AI on this computer is to be asked.
void localAI(AppModel& model);
/// The call is being transcribed.
void processing(AppModel& model);
/// The call couldn't be transcribed.
void problem(AppModel& model);

void cards(AppModel& model);
void cardsAndTable(AppModel& model);
void todoNote(AppModel& model);
void venues(AppModel& model);

void calls(AppModel& model);
void todos(AppModel& model);
void decks(AppModel& model);
void search(AppModel& model);
void searchInVain(AppModel& model);
void study(AppModel& model);

/// A recording that runs for a while, and one that has just begun.
void live(AppModel& model);
void liveStart(AppModel& model);
/// What is played can't be recorded.
void missingSound(AppModel& model);

void empty(AppModel& model);
void noTodos(AppModel& model);
void noDecks(AppModel& model);

} // namespace Scenes
} // namespace varnic
