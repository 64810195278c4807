#pragma once

#include "VarnicCore/Library/Flashcards.h"
#include "VarnicCore/Library/NoteSearch.h"
#include "VarnicCore/Library/Todos.h"

#include <nlohmann/json_fwd.hpp>

#include <vector>

/// What the library's tools find, as JSON for programs. Any thread.
namespace varnic::ResultJson {

/// [{noteID, hits: [{field, snippet, highlights: [[begin, end]], time?, blockID?, score}]}]
nlohmann::json matches(const std::vector<NoteMatch>& matches);

/// [{noteID, noteTitle, block, dueDate?}]
nlohmann::json todos(const std::vector<OpenTodo>& todos);

/// [{noteID, title, total, due}]
nlohmann::json decks(const std::vector<Flashcards::Deck>& decks);

} // namespace varnic::ResultJson
