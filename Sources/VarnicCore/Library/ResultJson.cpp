#include "VarnicCore/Library/ResultJson.h"

#include "VarnicCore/Library/NoteJson.h"

#include <nlohmann/json.hpp>

namespace varnic::ResultJson {

namespace {

nlohmann::json hitJson(const SearchHit& hit) {
    auto highlights = nlohmann::json::array();
    for (const Highlight& highlight : hit.highlights) {
        highlights.push_back({highlight.begin, highlight.end});
    }
    nlohmann::json object{{"field", rawValue(hit.field)},
                          {"snippet", hit.snippet},
                          {"highlights", std::move(highlights)},
                          {"score", hit.score}};
    if (hit.time) {
        object["time"] = *hit.time;
    }
    if (hit.blockID) {
        object["blockID"] = hit.blockID->text();
    }
    return object;
}

} // namespace

nlohmann::json matches(const std::vector<NoteMatch>& matches) {
    auto array = nlohmann::json::array();
    for (const NoteMatch& match : matches) {
        auto hits = nlohmann::json::array();
        for (const SearchHit& hit : match.hits) {
            hits.push_back(hitJson(hit));
        }
        array.push_back({{"noteID", match.note->id.text()}, {"hits", std::move(hits)}});
    }
    return array;
}

nlohmann::json todos(const std::vector<OpenTodo>& todos) {
    auto array = nlohmann::json::array();
    for (const OpenTodo& todo : todos) {
        nlohmann::json object{
            {"noteID", todo.noteID.text()}, {"noteTitle", todo.noteTitle}, {"block", encode(todo.block)}};
        if (todo.dueDate) {
            object["dueDate"] = formatDate(*todo.dueDate);
        }
        array.push_back(std::move(object));
    }
    return array;
}

nlohmann::json decks(const std::vector<Flashcards::Deck>& decks) {
    auto array = nlohmann::json::array();
    for (const Flashcards::Deck& deck : decks) {
        array.push_back(
            {{"noteID", deck.noteID.text()}, {"title", deck.title}, {"total", deck.total}, {"due", deck.due}});
    }
    return array;
}

} // namespace varnic::ResultJson
