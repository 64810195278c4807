#include "VarnicCore/Library/Flashcards.h"

#include <unicode/locid.h>

#include <algorithm>
#include <chrono>
#include <limits>
#include <memory>
#include <stdexcept>

namespace varnic::Flashcards {

namespace {

constexpr std::array<std::string_view, allGrades.size()> gradeNames{"again", "good", "easy"};
constexpr auto lastBox = static_cast<int>(intervals.size());

/// Days until a card that went to this box returns: never the same day.
std::chrono::days restOf(int box) {
    const bool known = box >= 1 && box <= lastBox;
    return std::chrono::days(known ? std::max(intervals.at(static_cast<std::size_t>(box - 1)), 1) : 1);
}

/// The order in which the region's users expect titles, "Week 2" before "Week 10".
std::unique_ptr<icu::Collator> titleOrder(const Region& region) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(icu::Locale(region.locale.c_str()), status));
    if (U_SUCCESS(status) != 0) {
        collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    }
    if (U_FAILURE(status) != 0) {
        throw std::runtime_error("The titles of this language cannot be sorted: " + region.locale);
    }
    return collator;
}

} // namespace

std::string_view rawValue(Grade grade) {
    return gradeNames.at(static_cast<std::size_t>(grade));
}

std::optional<Grade> gradeFrom(std::string_view rawValue) {
    const auto* const found = std::ranges::find(gradeNames, rawValue);
    if (found == gradeNames.end()) {
        return std::nullopt;
    }
    return allGrades.at(static_cast<std::size_t>(found - gradeNames.begin()));
}

CardState grade(const std::optional<CardState>& state, Grade grade, Date now, const Region& region) {
    CardState next = state.value_or(CardState{});
    if (next.reviews < std::numeric_limits<int>::max()) {
        ++next.reviews;
    }
    if (grade == Grade::again) {
        next.box = 1;
        next.due = now + std::chrono::minutes(10);
        return next;
    }
    // Capped before the sum too: a hand-edited box may be any number.
    next.box = std::min(std::min(next.box, lastBox) + (grade == Grade::easy ? 2 : 1), lastBox);
    next.due = region.startOfDay(region.day(now) + restOf(next.box));
    return next;
}

bool isDue(const Block& block, Date now) {
    if (block.kind != BlockKind::flashcard || block.text.empty()) {
        return false;
    }
    return !block.card || !block.card->due || now >= *block.card->due;
}

std::vector<Block> dueCards(const Note& note, Date now) {
    std::vector<Block> cards = note.flashcards();
    std::erase_if(cards, [now](const Block& card) { return !isDue(card, now); });
    return cards;
}

std::optional<Date> nextDue(const Note& note, Date now) {
    std::optional<Date> next;
    for (const Block& block : note.blocks) {
        const bool isCard = block.kind == BlockKind::flashcard && !block.text.empty();
        const bool isToCome = isCard && block.card && block.card->due > now;
        if (isToCome && (!next || *block.card->due < *next)) {
            next = block.card->due;
        }
    }
    return next;
}

std::optional<Deck> deckOf(const Note& note, Date now) {
    Deck deck{.noteID = note.id, .title = note.displayTitle()};
    for (const Block& block : note.blocks) {
        if (block.kind == BlockKind::flashcard && !block.text.empty()) {
            ++deck.total;
            deck.due += isDue(block, now) ? 1 : 0;
        }
    }
    return deck.total > 0 ? std::optional(std::move(deck)) : std::nullopt;
}

DeckOrder::DeckOrder(const Region& region) : titles_(titleOrder(region)) {}

bool DeckOrder::comesBefore(const Deck& a, const Deck& b) const {
    if (a.due != b.due) {
        return a.due > b.due;
    }
    UErrorCode status = U_ZERO_ERROR;
    return titles_->compareUTF8(a.title, b.title, status) == UCOL_LESS;
}

std::vector<Deck> decks(const SharedNotes& notes, Date now, const Region& region) {
    std::vector<Deck> found;
    for (const Note& note : notes) {
        if (auto deck = deckOf(note, now)) {
            found.push_back(std::move(*deck));
        }
    }
    const DeckOrder order(region);
    std::ranges::stable_sort(found, [&order](const Deck& a, const Deck& b) { return order.comesBefore(a, b); });
    return found;
}

} // namespace varnic::Flashcards
