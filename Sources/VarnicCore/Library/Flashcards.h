#pragma once

#include "VarnicCore/Library/SharedNotes.h"
#include "VarnicCore/Models/Block.h"
#include "VarnicCore/Models/Date.h"
#include "VarnicCore/Models/Note.h"
#include "VarnicCore/Models/Region.h"
#include "VarnicCore/Models/Uuid.h"

#include <unicode/coll.h>

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Flashcards in five boxes: the further a card has come, the longer it rests. Any thread.
namespace varnic::Flashcards {

/// How well the user knew a card.
enum class Grade { again, good, easy };

inline constexpr std::array allGrades{Grade::again, Grade::good, Grade::easy};

std::string_view rawValue(Grade grade);
std::optional<Grade> gradeFrom(std::string_view rawValue);

/// The days that a card rests in boxes 1 to 5.
inline constexpr std::array intervals{0, 1, 3, 7, 16};

/// The cards of one note.
struct Deck {
    Uuid noteID;
    /// The note's display title.
    std::string title;
    /// Cards with a front.
    int total = 0;
    /// Those of them that are due.
    int due = 0;

    [[nodiscard]] const Uuid& id() const { return noteID; }

    bool operator==(const Deck&) const = default;
};

/// The schedule after an answer given at `now`; without a state the card is new. A failed card is due again in ten
/// minutes, any other at the first moment of a later day in the region.
CardState grade(const std::optional<CardState>& state, Grade grade, Date now, const Region& region);

/// Whether the block is a flashcard with a front whose time has come.
bool isDue(const Block& block, Date now);

/// The due cards of a note, in block order.
std::vector<Block> dueCards(const Note& note, Date now);

/// When the next of a note's cards comes due; nothing where none is still to come.
std::optional<Date> nextDue(const Note& note, Date now);

/// Nothing for a note that has no card with a front.
std::optional<Deck> deckOf(const Note& note, Date now);

/// Most due cards first, then by title as the region sorts, numbers by their value.
class DeckOrder {
public:
    explicit DeckOrder(const Region& region);

    [[nodiscard]] bool comesBefore(const Deck& a, const Deck& b) const;

private:
    std::shared_ptr<const icu::Collator> titles_;
};

/// One deck for each note that has a card with a front, in the order of decks. Decks that compare equal keep that of
/// the notes.
std::vector<Deck> decks(const SharedNotes& notes, Date now, const Region& region);

} // namespace varnic::Flashcards
