#pragma once

#include "Varnic/AppModel/ChangedNotes.h"
#include "VarnicCore/Library/Flashcards.h"
#include "VarnicCore/Library/SharedNotes.h"
#include "VarnicCore/Library/Todos.h"

#include <cstddef>
#include <optional>
#include <set>
#include <unordered_map>
#include <vector>

namespace varnic {

/// The open to-dos and the decks of the library: what Todos::open and Flashcards::decks make of its notes, kept in line
/// with those that change, so that a keystroke costs no walk over all. One thread at a time.
class RollUps {
public:
    /// Both must outlive this.
    RollUps(const SharedNotes& notes, const Region& region) : notes_(notes), region_(region) {}

    /// To be told of each change.
    void take(const ChangedNotes& changed);

    /// Valid until the next call.
    [[nodiscard]] const std::vector<OpenTodo>& openTodos();
    /// Valid until the next call.
    [[nodiscard]] const std::vector<Flashcards::Deck>& decks(Date now);

private:
    void checkRegion();
    void makeTodos();
    void makeDecks(Date now);
    void updateTodos(const Uuid& id);
    void updateDeck(const Uuid& id, Date now);
    [[nodiscard]] bool comesBefore(const OpenTodo& a, const OpenTodo& b) const;
    [[nodiscard]] std::size_t placeOf(const Uuid& note) const;

    const SharedNotes& notes_;
    const Region& region_;
    /// The region that both were made for.
    Region madeFor_;
    std::optional<std::vector<OpenTodo>> todos_;
    /// When the notes with to-dos were created, which orders them.
    std::unordered_map<Uuid, Date> createdOf_;
    std::optional<std::vector<Flashcards::Deck>> decks_;
    /// When the decks were made, and when the next card comes due.
    Date decksMade_;
    std::optional<Date> decksEnd_;
    /// Notes that have changed since then.
    std::set<Uuid> changedTodos_;
    std::set<Uuid> changedDecks_;
};

} // namespace varnic
