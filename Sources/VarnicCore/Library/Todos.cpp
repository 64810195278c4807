#include "VarnicCore/Library/Todos.h"

#include "VarnicCore/Summariser/DueDate.h"
#include "VarnicCore/Text/Unicode.h"

#include <algorithm>
#include <functional>
#include <iterator>

namespace varnic::Todos {

namespace {

bool isOpen(const Block& block) {
    return block.kind == BlockKind::todo && !block.done && !Unicode::trimBlanks(block.text).empty();
}

std::optional<Date> dueDate(const Block& todo, const Note& note, const Region& region) {
    if (!todo.due) {
        return std::nullopt;
    }
    return DueDate::resolve(*todo.due, note.call ? note.call->startedAt : note.created, region);
}

std::vector<const Note*> newestFirst(const SharedNotes& notes) {
    std::vector<const Note*> sorted;
    sorted.reserve(notes.size());
    for (const Note& note : notes) {
        sorted.push_back(&note);
    }
    std::ranges::stable_sort(sorted, std::greater(), &Note::created);
    return sorted;
}

bool isDueBefore(const OpenTodo& a, const OpenTodo& b) {
    return a.dueDate && (!b.dueDate || *a.dueDate < *b.dueDate);
}

} // namespace

std::vector<OpenTodo> of(const Note& note, const Region& region) {
    std::vector<OpenTodo> rows;
    for (const Block& block : note.blocks) {
        if (isOpen(block)) {
            rows.push_back({note.id, note.displayTitle(), block, dueDate(block, note, region)});
        }
    }
    std::ranges::stable_sort(rows, isDueBefore);
    return rows;
}

std::vector<OpenTodo> open(const SharedNotes& notes, const Region& region) {
    std::vector<OpenTodo> rows;
    for (const Note* note : newestFirst(notes)) {
        std::ranges::move(of(*note, region), std::back_inserter(rows));
    }
    std::ranges::stable_sort(rows, isDueBefore);
    return rows;
}

} // namespace varnic::Todos
