#include "Varnic/SelfTest/Checks.h"
#include "Varnic/SelfTest/UserJourney.h"
#include "VarnicCore/Editor/NoteEditor.h"
#include "VarnicCore/Library/NoteSearch.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <vector>

namespace varnic {

namespace {

using namespace std::chrono_literals;

const NoteMatch* matchOf(const std::vector<NoteMatch>& matches, const Uuid& id) {
    const auto found = std::ranges::find(matches, id, [](const NoteMatch& match) { return match.note->id; });
    return found == matches.end() ? nullptr : &*found;
}

bool isSpokenWithTime(const SearchHit& hit) {
    return hit.field == SearchHit::Field::transcript && hit.time;
}

} // namespace

QCoro::Task<> UserJourney::keepCards() {
    vocabulary_ = model_.newNote();
    const Note* fresh = model_.note(vocabulary_);
    checks_.check(fresh != nullptr && model_.selection.value() == vocabulary_ && model_.isVisible(*fresh),
                  "⌘N makes a note and opens it");
    typeCard();
    gradeCard();
    search();
    tickTodo();
    co_await deleteAndUndo();
}

void UserJourney::typeCard() {
    model_.update(vocabulary_, false, [](Note& note) {
        const Uuid block = note.blocks.front().id;
        note.title = vocabularyTitle;
        NoteEditor::update(block, note, currentDate(), [](Block& typed) { typed.text = "Spanish :: Español 🇪🇸"; });
        NoteEditor::applyShortcut(block, note, currentDate());
    });
    const auto isCard = [](const Note* note) {
        return note != nullptr && note->title == vocabularyTitle && note->blocks.front().kind == BlockKind::flashcard;
    };
    checks_.check(isCard(model_.note(vocabulary_)), "typing “a :: b” makes a flashcard");
    model_.flushSaves();
    const std::optional<Note> onDisk = stored(vocabulary_);
    checks_.check(onDisk && isCard(&*onDisk), "edits are saved to disk");
}

void UserJourney::gradeCard() {
    checks_.check(dueCards() == 1, "the new card is due");
    if (const Note* note = model_.note(vocabulary_); note != nullptr && !note->flashcards().empty()) {
        model_.grade(vocabulary_, note->flashcards().front().id, Flashcards::Grade::good);
    }
    checks_.check(dueCards() == 0, "grading it schedules it for later");
}

void UserJourney::search() {
    const std::vector<Note> notes(model_.notes().begin(), model_.notes().end());
    checks_.check(matchOf(NoteSearch::search("cafe espanol", notes), vocabulary_) != nullptr,
                  "search finds it without accents");
    const std::vector<NoteMatch> spoken = NoteSearch::search("intel build", notes);
    const NoteMatch* match = matchOf(spoken, call_);
    checks_.check(match != nullptr && std::ranges::any_of(match->hits, isSpokenWithTime),
                  "search finds the call by its transcript, with a time");
}

void UserJourney::tickTodo() {
    model_.section = LibrarySection::todos;
    const auto ofCall = std::ranges::find(model_.openTodos(), call_, &OpenTodo::noteID);
    const bool wasListed = ofCall != model_.openTodos().end();
    bool isListed = wasListed;
    if (wasListed) {
        const Uuid todo = ofCall->id();
        model_.toggleTodo(call_, todo);
        isListed = std::ranges::find(model_.openTodos(), todo, &OpenTodo::id) != model_.openTodos().end();
    }
    checks_.check(wasListed && !isListed, "ticking a to-do in To-dos removes it from the list");
    model_.section = LibrarySection::all;
}

QCoro::Task<> UserJourney::deleteAndUndo() {
    model_.remove(vocabulary_);
    const std::optional<ToastMessage> offer = model_.toast.value();
    auto removing = Checks::until(5s, [this] { return !stored(vocabulary_); });
    const bool isRemoved = co_await removing;
    checks_.check(isRemoved && model_.note(vocabulary_) == nullptr, "delete removes the note");
    if (offer && offer->undo) {
        offer->undo();
    }
    auto restoring = Checks::until(5s, [this] { return model_.note(vocabulary_) != nullptr && stored(vocabulary_); });
    const bool isBack = co_await restoring;
    checks_.check(isBack, "Undo brings it back");
}

/// Of the vocabulary; -1 where it has no deck.
int UserJourney::dueCards() const {
    const auto& decks = model_.decks();
    const auto deck = std::ranges::find(decks, vocabulary_, &Flashcards::Deck::noteID);
    return deck == decks.end() ? -1 : deck->due;
}

} // namespace varnic
