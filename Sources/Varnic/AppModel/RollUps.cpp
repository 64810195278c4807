#include "Varnic/AppModel/RollUps.h"

#include <algorithm>
#include <utility>

namespace varnic {

namespace {

/// The earlier of two moments, each of which may never come.
std::optional<Date> earlier(std::optional<Date> a, std::optional<Date> b) {
    if (a && b) {
        return std::min(a, b);
    }
    return a ? a : b;
}

bool haveSameDates(const std::vector<OpenTodo*>& known, const std::vector<OpenTodo>& fresh) {
    return std::ranges::equal(known, fresh,
                              [](const OpenTodo* a, const OpenTodo& b) { return a->dueDate == b.dueDate; });
}

} // namespace

void RollUps::take(const ChangedNotes& changed) {
    if (!changed) {
        todos_.reset();
        decks_.reset();
        return;
    }
    changedTodos_.insert(changed->begin(), changed->end());
    changedDecks_.insert(changed->begin(), changed->end());
}

void RollUps::checkRegion() {
    if (madeFor_ != region_) {
        madeFor_ = region_;
        todos_.reset();
        decks_.reset();
    }
}

const std::vector<OpenTodo>& RollUps::openTodos() {
    checkRegion();
    if (!todos_) {
        makeTodos();
    }
    const std::set<Uuid> changed = std::exchange(changedTodos_, {});
    for (const bool isThere :
         {false, true}) { // what is gone first, for the others find their places between those there
        for (const Uuid& id : changed) {
            if ((notes_.find(id) != nullptr) == isThere) {
                updateTodos(id);
            }
        }
    }
    return *todos_;
}

void RollUps::makeTodos() {
    changedTodos_.clear();
    todos_ = Todos::open(notes_, region_);
    createdOf_.clear();
    for (const OpenTodo& todo : *todos_) {
        createdOf_.emplace(todo.noteID, notes_.find(todo.noteID)->created);
    }
}

std::size_t RollUps::placeOf(const Uuid& note) const {
    return static_cast<std::size_t>(std::ranges::find(notes_.all(), notes_.find(note)) - notes_.all().begin());
}

/// As Todos::open orders those of different notes.
bool RollUps::comesBefore(const OpenTodo& a, const OpenTodo& b) const {
    if (a.dueDate != b.dueDate) {
        return a.dueDate && (!b.dueDate || *a.dueDate < *b.dueDate);
    }
    const Date createdA = createdOf_.at(a.noteID);
    const Date createdB = createdOf_.at(b.noteID);
    return createdA != createdB ? createdA > createdB : placeOf(a.noteID) < placeOf(b.noteID);
}

void RollUps::updateTodos(const Uuid& id) {
    const SharedNote note = notes_.find(id);
    std::vector<OpenTodo> fresh = note ? Todos::of(*note, region_) : std::vector<OpenTodo>();
    if (fresh.empty() && !createdOf_.contains(id)) {
        return;
    }
    std::vector<OpenTodo*> known;
    for (OpenTodo& todo : *todos_) {
        if (todo.noteID == id) {
            known.push_back(&todo);
        }
    }
    Date& created = createdOf_[id];
    const bool sameCreated = note && std::exchange(created, note->created) == note->created;
    if (sameCreated && haveSameDates(known, fresh)) {
        for (std::size_t i = 0; i < fresh.size(); ++i) {
            *known[i] = std::move(fresh[i]);
        }
        return;
    }
    if (fresh.empty()) {
        createdOf_.erase(id);
    }
    std::erase_if(*todos_, [&id](const OpenTodo& todo) { return todo.noteID == id; });
    for (OpenTodo& todo : fresh) {
        const auto place = std::ranges::upper_bound(
            *todos_, todo, [this](const OpenTodo& a, const OpenTodo& b) { return comesBefore(a, b); });
        todos_->insert(place, std::move(todo));
    }
}

const std::vector<Flashcards::Deck>& RollUps::decks(Date now) {
    checkRegion();
    if (!decks_ || now < decksMade_ || (decksEnd_ && now >= *decksEnd_)) {
        makeDecks(now);
    }
    for (const Uuid& id : std::exchange(changedDecks_, {})) {
        updateDeck(id, now);
    }
    return *decks_;
}

void RollUps::makeDecks(Date now) {
    changedDecks_.clear();
    decks_ = Flashcards::decks(notes_, now, region_);
    decksMade_ = now;
    decksEnd_.reset();
    for (const Note& note : notes_) {
        decksEnd_ = earlier(decksEnd_, Flashcards::nextDue(note, now));
    }
}

void RollUps::updateDeck(const Uuid& id, Date now) {
    const SharedNote note = notes_.find(id);
    std::optional<Flashcards::Deck> fresh = note ? Flashcards::deckOf(*note, now) : std::nullopt;
    const auto known = std::ranges::find(*decks_, id, &Flashcards::Deck::noteID);
    const bool isKnown = known != decks_->end();
    if (isKnown ? fresh == *known : !fresh) {
        return;
    }
    if (isKnown) {
        decks_->erase(known);
    }
    if (!fresh) {
        return;
    }
    decksEnd_ = earlier(decksEnd_, Flashcards::nextDue(*note, now));
    const Flashcards::DeckOrder order(region_);
    const auto place =
        std::ranges::upper_bound(*decks_, *fresh, [&](const Flashcards::Deck& a, const Flashcards::Deck& b) {
            return order.comesBefore(a, b) || (!order.comesBefore(b, a) && placeOf(a.noteID) < placeOf(b.noteID));
        });
    decks_->insert(place, std::move(*fresh));
}

} // namespace varnic
