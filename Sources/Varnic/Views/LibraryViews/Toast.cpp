#include "Varnic/Views/LibraryViews/Toast.h"

#include "Varnic/Views/Context/ViewContext.h"
#include "VarnicCore/Models/Wording.h"

namespace varnic {

Toast* Toast::create(const QQmlEngine* engine, const QJSEngine* /*scripts*/) {
    return new Toast(ViewContext::of(*engine).model);
}

Toast::Toast(AppModel& model, QObject* parent) : QObject(parent), model_(model) {
    watcher_ = model.toast.addNotifier([this] {
        take();
        Q_EMIT changed();
    });
    take();
}

void Toast::take() {
    if (shows()) {
        last_ = model_.toast.value();
    }
}

QString Toast::toastId() const {
    return last_ ? QString::fromStdString(last_->id.text()) : QString();
}

QString Toast::text() const {
    return last_ ? QString::fromStdString(Wording::shown(last_->text)) : QString();
}

QString Toast::symbol() const {
    return last_ ? QString::fromStdString(last_->symbol) : QString();
}

bool Toast::undoable() const {
    return last_ && last_->undo;
}

void Toast::undo() const {
    if (shows() && undoable()) {
        // A copy, since undoing may show another notice.
        const auto undo = model_.toast.value()->undo;
        undo();
    }
}

} // namespace varnic
