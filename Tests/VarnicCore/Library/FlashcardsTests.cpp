#include "VarnicCore/Library/Flashcards.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace varnic {
namespace {

using Flashcards::Grade;

const Date noon = parseDate("2026-03-14T12:00:00Z");

CardState inBox(int box, int reviews = 0) {
    return {.box = box, .due = noon, .reviews = reviews};
}

struct GradeCase {
    std::optional<CardState> state;
    Grade grade;
    int box;
    std::string due;
};

TEST(Flashcards, grade_movesTheCardAndSetsItsDate) {
    const std::vector<GradeCase> cases{
        {std::nullopt, Grade::good, 2, "2026-03-15T00:00:00.000Z"},
        {std::nullopt, Grade::easy, 3, "2026-03-17T00:00:00.000Z"},
        {std::nullopt, Grade::again, 1, "2026-03-14T12:10:00.000Z"},
        {inBox(3, 4), Grade::good, 4, "2026-03-21T00:00:00.000Z"},
        {inBox(4), Grade::easy, 5, "2026-03-30T00:00:00.000Z"},
        {inBox(5), Grade::good, 5, "2026-03-30T00:00:00.000Z"},
        {inBox(5), Grade::again, 1, "2026-03-14T12:10:00.000Z"},
        // Boxes that only a hand-edited note has.
        {inBox(0), Grade::good, 1, "2026-03-15T00:00:00.000Z"},
        {inBox(-7), Grade::easy, -5, "2026-03-15T00:00:00.000Z"},
        {inBox(std::numeric_limits<int>::max()), Grade::easy, 5, "2026-03-30T00:00:00.000Z"},
    };
    for (const auto& [state, grade, box, due] : cases) {
        const CardState next = Flashcards::grade(state, grade, noon, Region{});
        EXPECT_EQ(next.box, box) << due;
        EXPECT_EQ(formatDate(next.due.value()), due) << box;
        EXPECT_EQ(next.reviews, state.value_or(CardState{}).reviews + 1);
    }
}

TEST(Flashcards, grade_countsDaysOfTheCalendarNotHours) {
    // 28 March in Berlin already; the clock is put forward the night after.
    const Date late = parseDate("2026-03-27T23:30:00Z");
    const CardState next = Flashcards::grade(std::nullopt, Grade::easy, late, Region{"de_DE", "Europe/Berlin"});
    EXPECT_EQ(formatDate(next.due.value()), "2026-03-30T22:00:00.000Z");
}

TEST(Flashcards, grade_reviewsAtTheirLargest_stayThere) {
    const CardState worn = inBox(2, std::numeric_limits<int>::max());
    EXPECT_EQ(Flashcards::grade(worn, Grade::good, noon, Region{}).reviews, worn.reviews);
}

Block cardDue(std::optional<Date> due, std::string front = "Front") {
    Block card = Block::flashcard(std::move(front), "Back");
    card.card->due = due;
    return card;
}

TEST(Flashcards, isDue_fromTheMomentOfItsDate) {
    EXPECT_TRUE(Flashcards::isDue(Block::flashcard("Front", ""), noon));
    EXPECT_TRUE(Flashcards::isDue(cardDue(noon), noon));
    EXPECT_FALSE(Flashcards::isDue(cardDue(noon + std::chrono::milliseconds(1)), noon));
    EXPECT_FALSE(Flashcards::isDue(cardDue(std::nullopt, ""), noon));
    Block stateless = cardDue(std::nullopt);
    stateless.card.reset();
    EXPECT_TRUE(Flashcards::isDue(stateless, noon));
    Block paragraph = cardDue(std::nullopt);
    paragraph.kind = BlockKind::paragraph;
    EXPECT_FALSE(Flashcards::isDue(paragraph, noon));
}

TEST(Flashcards, nextDue_isTheSoonestOfTheCardsToCome) {
    const auto at = [](int hours) { return noon + std::chrono::hours(hours); };
    Note note(noon, "Deck");
    EXPECT_EQ(Flashcards::nextDue(note, noon), std::nullopt);
    note.blocks = {cardDue(noon), cardDue(at(3)), cardDue(at(2)), cardDue(std::nullopt), cardDue(at(1), "")};
    EXPECT_EQ(Flashcards::nextDue(note, noon), at(2));
}

Note noteOf(std::string title, int due, int resting) {
    Note note(noon, std::move(title));
    for (int i = 0; i < due; ++i) {
        note.blocks.push_back(cardDue(noon));
    }
    for (int i = 0; i < resting; ++i) {
        note.blocks.push_back(cardDue(noon + std::chrono::hours(1)));
    }
    return note;
}

TEST(Flashcards, dueCards_keepBlockOrder) {
    Note note = noteOf("Deck", 2, 1);
    note.blocks.push_back(cardDue(std::nullopt));
    const auto cards = Flashcards::dueCards(note, noon);
    ASSERT_EQ(cards.size(), 3U);
    EXPECT_EQ(cards[0].id, note.blocks[1].id);
    EXPECT_EQ(cards[2].id, note.blocks[4].id);
}

TEST(Flashcards, decks_mostDueFirstThenByTitle) {
    Note frontless(noon, "No front");
    frontless.blocks = {cardDue(noon, "")};
    const std::vector<Note> notes{noteOf("Week 10", 3, 0), noteOf("Resting", 0, 2), noteOf("week 2", 3, 1),
                                  noteOf("Écoute", 3, 0),  noteOf("Zeta", 3, 0),    frontless,
                                  noteOf("Plain", 0, 0),   noteOf("Many", 4, 0),    noteOf("Week 10", 3, 5)};
    std::vector<std::string> listed;
    for (const auto& deck : Flashcards::decks(notes, noon, Region{})) {
        listed.push_back(deck.title + " " + std::to_string(deck.due) + "/" + std::to_string(deck.total));
    }
    EXPECT_EQ(listed, (std::vector<std::string>{"Many 4/4", "Écoute 3/3", "week 2 3/4", "Week 10 3/3", "Week 10 3/8",
                                                "Zeta 3/3", "Resting 0/2"}));
}

TEST(Flashcards, decks_sortAsTheRegionDoes) {
    const std::vector<Note> notes{noteOf("Öl", 1, 0), noteOf("Zug", 1, 0)};
    EXPECT_EQ(Flashcards::decks(notes, noon, Region{"de_DE", "UTC"}).front().title, "Öl");
    EXPECT_EQ(Flashcards::decks(notes, noon, Region{"sv_SE", "UTC"}).front().title, "Zug");
}

} // namespace
} // namespace varnic
