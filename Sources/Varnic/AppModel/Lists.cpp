#include "Varnic/AppModel/AppModel.h"

#include "Varnic/Recording/RecordingController.h"

#include <algorithm>
#include <numeric>

namespace varnic {

std::vector<const Note*> AppModel::visibleNotes() const {
    std::vector<const Note*> visible;
    visible.reserve(notes_.size());
    for (const Note& note : notes_) {
        if (isVisible(note)) {
            visible.push_back(&note);
        }
    }
    std::ranges::stable_sort(visible, [](const Note* a, const Note* b) {
        return std::pair(a->pinned, a->created) > std::pair(b->pinned, b->created);
    });
    return visible;
}

bool AppModel::isVisible(const Note& note) const {
    const LibrarySection shown = section.value();
    return shown == LibrarySection::calls ? note.isCall() : shown != LibrarySection::notes || !note.isCall();
}

const Note* AppModel::note(std::optional<Uuid> id) const {
    return id ? notes_.find(*id).get() : nullptr;
}

std::optional<Uuid> AppModel::liveNoteID() const {
    return isBusy(recorder_->state()) ? std::optional(recorder_->noteID()) : std::nullopt;
}

int AppModel::dueCardCount() const {
    const auto& all = decks();
    return std::transform_reduce(all.begin(), all.end(), 0, std::plus(), [](const auto& deck) { return deck.due; });
}

} // namespace varnic
