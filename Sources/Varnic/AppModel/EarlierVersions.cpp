#include "Varnic/AppModel/AppModel.h"

#include "VarnicCore/Editor/EarlierVersion.h"

#include <QPointer>

namespace varnic {

/// Keeps the call as it is, since something new is about to take its place. There is nothing to keep of one that has no
/// words yet.
bool AppModel::keepEarlier(Uuid id) {
    const Note* stored = note(id);
    if (isDemo || stored == nullptr || !stored->call || stored->call->segments.empty()) {
        return false;
    }
    keptEarlier_.insert(id);
    store_.keepEarlier(*stored);
    return true;
}

/// The notice of a new transcript or summary, by which the user can take it back.
ToastMessage AppModel::undoable(Uuid id, std::string text, std::string symbol) {
    return {.text = std::move(text), .symbol = std::move(symbol), .undo = [this, id] { bringBackEarlier(id); }};
}

bool AppModel::hasEarlier(Uuid id) const {
    return keptEarlier_.contains(id) || store_.hasEarlier(id);
}

QCoro::Task<> AppModel::bringBackEarlier(Uuid id) {
    const QPointer self(this);
    const std::optional<Note> earlier = co_await store_.earlier(id, currentDate());
    if (!self) {
        co_return;
    }
    const Note* stored = note(id);
    if (stored == nullptr || !callActions(*stored, {.hasEarlier = earlier.has_value()}).bringBackEarlier) {
        co_return;
    }
    keepEarlier(id);
    update(id, true, [&earlier](Note& note) { note = withEarlierDigest(note, *earlier, currentDate()); });
}

} // namespace varnic
