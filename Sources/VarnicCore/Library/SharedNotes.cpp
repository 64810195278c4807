#include "VarnicCore/Library/SharedNotes.h"

#include <algorithm>
#include <utility>

namespace varnic {

SharedNotes::SharedNotes(std::vector<Note> notes) {
    for (Note& note : notes) {
        push_back(std::move(note));
    }
}

SharedNote SharedNotes::find(const Uuid& id) const {
    const auto found = byId_.find(id);
    return found == byId_.end() ? nullptr : found->second;
}

void SharedNotes::insert(Iterator before, Note note) {
    const auto shared = std::make_shared<const Note>(std::move(note));
    byId_[shared->id] = shared;
    notes_.insert(before.base(), shared);
}

void SharedNotes::push_back(Note note) {
    insert(end(), std::move(note));
}

void SharedNotes::replace(Note note) {
    SharedNote& known = byId_.at(note.id);
    // By the pointer, so that the other notes need not be fetched from memory.
    const auto place = std::ranges::find(notes_, known);
    known = std::make_shared<const Note>(std::move(note));
    *place = known;
}

void SharedNotes::erase(const Uuid& id) {
    if (const auto found = byId_.find(id); found != byId_.end()) {
        std::erase(notes_, found->second);
        byId_.erase(found);
    }
}

} // namespace varnic
