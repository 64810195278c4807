#include "Varnic/Views/NotePage/DetailModel.h"

#include "Varnic/Recording/RecordingController.h"
#include "Varnic/Views/Context/ViewContext.h"

namespace varnic {

void DetailModel::componentComplete() {
    app_ = &ViewContext::of(this).model;
    watchers_.push_back(app_->selection.addNotifier([this] { refresh(); }));
    connect(&app_->recorder(), &RecordingController::stateChanged, this, &DetailModel::refresh);
    refresh();
}

void DetailModel::refresh() {
    const std::optional<Uuid>& selection = app_->selection.value();
    const bool live = selection && app_->liveNoteID() == selection;
    const QStringList notes =
        selection && !live ? QStringList(QString::fromStdString(selection->text())) : QStringList();
    if (live != live_ || notes != notes_) {
        live_ = live;
        notes_ = notes;
        Q_EMIT changed();
    }
}

void DetailModel::newNote() {
    app_->newNote();
}

void DetailModel::record() {
    app_->toggleRecording();
}

} // namespace varnic
