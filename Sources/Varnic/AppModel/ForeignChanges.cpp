#include "Varnic/AppModel/AppModel.h"

#include <algorithm>
#include <utility>

namespace varnic {

LibraryQueue::Changes AppModel::onMain() {
    return [this](std::vector<NoteChange> changes) {
        inbox_.post([this, changes = std::move(changes)]() mutable { takeChanges(std::move(changes)); });
    };
}

/// Lets the notes follow what others did to their files. A note with edits that are not on disk stays as it is: saving
/// it keeps both.
void AppModel::takeChanges(std::vector<NoteChange> changes) {
    std::erase_if(changes, [this](const NoteChange& change) { return !takeChange(change); });
    if (changes.empty()) {
        return;
    }
    Q_EMIT notesChanged();
    store_.accept(std::move(changes), onMain());
}

bool AppModel::takeChange(const NoteChange& change) {
    if (unsaved_.contains(change.id)) {
        return false;
    }
    Note* stored = find(change.id);
    if (change.note && stored != nullptr) {
        *stored = *change.note;
        search_.forget(change.id);
    } else if (change.note) {
        notes_.push_back(*change.note);
    } else if (stored != nullptr) {
        forget(change.id);
    }
    return true;
}

} // namespace varnic
