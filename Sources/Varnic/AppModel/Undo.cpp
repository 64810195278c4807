#include "Varnic/AppModel/AppModel.h"

namespace varnic {

std::optional<TextPlace> AppModel::edit(Uuid id, const Edit& edit,
                                        const std::function<std::optional<TextPlace>(Note&)>& change) {
    const SharedNote before = notes_.find(id);
    if (!before) {
        return std::nullopt;
    }
    std::optional<TextPlace> caret;
    update(id, edit.saveNow, [&](Note& note) {
        caret = change(note);
        histories_[id].record(*before, note, edit.kind, edit.caret, caret, currentDate());
    });
    return caret;
}

std::optional<TextPlace> AppModel::undo(Uuid id) {
    return restoreEdit(id, &NoteHistory::undo);
}

std::optional<TextPlace> AppModel::redo(Uuid id) {
    return restoreEdit(id, &NoteHistory::redo);
}

std::optional<TextPlace> AppModel::restoreEdit(Uuid id, RestoreEdit step) {
    const SharedNote stored = notes_.find(id);
    const auto history = histories_.find(id);
    if (!stored || history == histories_.end()) {
        return std::nullopt;
    }
    auto restored = (history->second.*step)(*stored, currentDate());
    if (!restored) {
        return std::nullopt;
    }
    update(id, false, [&restored](Note& note) { note = std::move(restored->note); });
    return restored->caret;
}

bool AppModel::canUndo(Uuid id) const {
    const auto history = histories_.find(id);
    return history != histories_.end() && history->second.canUndo();
}

bool AppModel::canRedo(Uuid id) const {
    const auto history = histories_.find(id);
    return history != histories_.end() && history->second.canRedo();
}

} // namespace varnic
