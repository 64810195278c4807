#include "Varnic/DemoData/DemoNotes.h"

#include <chrono>
#include <optional>
#include <string>
#include <utility>

namespace varnic::DemoData {

namespace {

using namespace std::chrono_literals;

Block block(BlockKind kind, std::string text) {
    Block made;
    made.kind = kind;
    made.text = std::move(text);
    return made;
}

Block todo(std::string text, std::optional<std::string> due = std::nullopt, bool done = false) {
    Block made = block(BlockKind::todo, std::move(text));
    made.due = std::move(due);
    made.done = done;
    return made;
}

/// A card in a box, due in so many days; a card that is due in 0 days may be studied now.
Block card(std::string front, std::string back, int box, int dueIn, const Days& days) {
    Block made = Block::flashcard(std::move(front), std::move(back));
    made.card = CardState{.box = box, .due = days.ago(-dueIn, 0min), .reviews = box - 1};
    return made;
}

Note cellBiology(const Days& days) {
    return {
        Uuid::random(),
        "Cell biology — week 6",
        days.ago(1, 16h + 20min),
        {block(BlockKind::heading, "Membranes and transport"),
         block(BlockKind::paragraph, "The membrane is a double layer of lipids that lets small molecules without a "
                                     "charge through. Everything else needs a protein, and uphill it costs energy."),
         card("What does the sodium–potassium pump move?", "Three sodium ions out, two potassium ions in", 1, 0, days),
         card("Osmosis", "Water moving through a membrane towards the higher concentration", 2, 0, days),
         card("Passive or active: glucose through a carrier, downhill", "Passive — facilitated diffusion", 3, 2, days),
         card("Fluid mosaic model", "Proteins drift in a fluid double layer of lipids", 4, 5, days),
         todo("Redo the diagram of the membrane"), todo("Read chapter 6.2", "Sunday")}};
}

Note venues(const Days& days) {
    return {Uuid::random(),
            "Team offsite venues",
            days.ago(2, 17h + 45min),
            {block(BlockKind::paragraph, "Shortlist for the March team offsite — twelve people, two nights."),
             Block::table({{"Venue", "Travel", "Per night", "Notes"},
                           {"Hillside Retreat", "2 h by train", "₹54,000", "Great garden, slow Wi-Fi"},
                           {"Lakeside Lodge", "3 h by bus", "₹48,000", "Boats, one big room"},
                           {"The Old Mill", "1 h by train", "₹61,000", "Best food, rooms are small"}}),
             todo("Ask Hillside about vegetarian menus"), todo("Hold dates with two venues", "next Tuesday"),
             block(BlockKind::quote, "Pick the one people will still talk about in a year.")}};
}

Note thisWeek(const Days& days) {
    return {Uuid::random(),
            "This week",
            days.ago(0, 8h + 30min),
            {todo("Send revised onboarding designs to Mira", "Friday"),
             todo("Book QA time for the Intel build", "tomorrow"), todo("Review Owen's take-home", "Monday"),
             todo("Order new headphones"), todo("Renew the domain", std::nullopt, true)}};
}

Note ideas(const Days& days) {
    return {Uuid::random(),
            "Ideas",
            days.ago(5, 21h + 10min),
            {block(BlockKind::bullet, "A weekly digest of open to-dos from calls"),
             block(BlockKind::bullet, "Flashcards from lecture recordings"),
             block(BlockKind::bullet, "One page that shows a month of calls as one long line of ink")}};
}

} // namespace

Date Days::ago(int days, std::chrono::minutes time) const {
    return region.startOfDay(region.day(now) - std::chrono::days(days)) + time;
}

std::vector<Note> writtenNotes(const Days& days) {
    return {cellBiology(days), venues(days), thisWeek(days), ideas(days)};
}

} // namespace varnic::DemoData
