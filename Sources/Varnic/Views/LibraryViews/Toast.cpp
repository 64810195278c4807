#include "Varnic/Views/LibraryViews/Toast.h"

#include "Varnic/Views/Context/ViewContext.h"
#include "VarnicCore/Models/Wording.h"

namespace varnic {

Toast* Toast::create(const QQmlEngine* engine, const QJSEngine* /*scripts*/) {
    return new Toast(ViewContext::of(*engine).model);
}

Toast::Toast(AppModel& model, QObject* parent) : QObject(parent), model_(model) {
    watcher_ = model.toast.addNotifier([this] { Q_EMIT changed(); });
}

QString Toast::toastId() const {
    return shows() ? QString::fromStdString(model_.toast.value()->id.text()) : QString();
}

QString Toast::text() const {
    return shows() ? QString::fromStdString(Wording::shown(model_.toast.value()->text)) : QString();
}

QString Toast::symbol() const {
    return shows() ? QString::fromStdString(model_.toast.value()->symbol) : QString();
}

bool Toast::undoable() const {
    return shows() && model_.toast.value()->undo;
}

void Toast::undo() const {
    if (undoable()) {
        // A copy, since undoing may show another notice.
        const auto undo = model_.toast.value()->undo;
        undo();
    }
}

} // namespace varnic
