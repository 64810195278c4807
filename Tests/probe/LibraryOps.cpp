#include "probe/Ops.h"

#include "VarnicCore/Library/ResultJson.h"

namespace varnic::probe {

namespace {

Json gradeCard(const Arguments& args) {
    const auto grade = Flashcards::gradeFrom(args.text("grade"));
    if (!grade) {
        throw ProbeError("no such grade: " + args.text("grade"));
    }
    const auto state = args.has("state") ? std::optional(args.stored<CardState>("state")) : std::nullopt;
    return encode(Flashcards::grade(state, *grade, args.now(), args.region()));
}

Json dueCards(const Arguments& args) {
    Json ids = Json::array();
    for (const Block& card : Flashcards::dueCards(args.note(), args.now())) {
        ids.push_back(card.id.text());
    }
    return ids;
}

Json search(const Arguments& args) {
    const std::vector<Note> notes = args.notes();
    return ResultJson::matches(NoteSearch::search(args.text("query"), notes));
}

} // namespace

Operations libraryOps() {
    return {
        {"cards.grade", gradeCard},
        {"cards.decks",
         [](const Arguments& args) {
             return ResultJson::decks(Flashcards::decks(args.notes(), args.now(), args.region()));
         }},
        {"cards.due", dueCards},
        {"search", search},
        {"todos.open",
         [](const Arguments& args) { return ResultJson::todos(Todos::open(args.notes(), args.region())); }},
    };
}

} // namespace varnic::probe
