#include "Varnic/AppModel/AppModel.h"

#include "Varnic/AppModel/LibraryWatch.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace varnic {

LibraryQueue::WhenLooked AppModel::onMain() {
    return [this, library = store_.root()](LibraryQueue::Looked looked) {
        loop_.post([this, library, looked = std::move(looked)]() mutable {
            if (library == store_.root()) { // another may have taken its place
                takeLook(std::move(looked));
            }
        });
    };
}

void AppModel::takeLook(LibraryQueue::Looked looked) {
    const bool isBack = !looked.problem && isUnreadable.value();
    showUnreadable(std::move(looked.problem));
    takeChanges(std::move(looked.changes));
    if (isBack && isRecoveryDue_) {
        load();
    } else if (isBack) {
        readLibrary(); // what went unseen meanwhile
    }
}

/// Says that the library cannot be looked into, or takes that back.
void AppModel::showUnreadable(std::optional<std::string> problem) {
    if (problem) {
        isUnreadable = true;
        loadProblem = std::move(problem);
    } else if (isUnreadable.value()) {
        isUnreadable = false;
        loadProblem = std::nullopt;
        saveUnsaved();
    }
}

/// Lets the notes follow what others did to their files. A note with edits that are not on disk stays as it is: saving
/// it keeps both.
void AppModel::takeChanges(std::vector<NoteChange> changes) {
    std::erase_if(changes, [this](const NoteChange& change) { return !takeChange(change); });
    if (changes.empty()) {
        return;
    }
    std::vector<Uuid> ids;
    std::ranges::transform(changes, std::back_inserter(ids), &NoteChange::id);
    Q_EMIT notesChanged(std::move(ids));
    store_.accept(std::move(changes), onMain());
}

bool AppModel::takeChange(const NoteChange& change) {
    if (unsaved_.contains(change.id)) {
        return false;
    }
    const SharedNote stored = notes_.find(change.id);
    if (change.note && stored) {
        notes_.replace(*change.note);
    } else if (change.note) {
        notes_.push_back(*change.note);
    } else if (stored) {
        forget(change.id);
    }
    return true;
}

} // namespace varnic
