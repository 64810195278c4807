#include "Varnic/Views/LibraryViews/RecordAction.h"

#include "Varnic/Recording/RecordingController.h"
#include "Varnic/Views/Context/ViewContext.h"
#include "VarnicCore/Models/Clock.h"
#include "VarnicCore/Models/Wording.h"
#include "VarnicCore/Pipeline/SessionState.h"

#include <utility>

namespace varnic {

RecordAction* RecordAction::create(const QQmlEngine* engine, const QJSEngine* /*scripts*/) {
    return new RecordAction(ViewContext::of(*engine).model);
}

RecordAction::RecordAction(AppModel& model, QObject* parent) : QObject(parent), model_(model) {
    connect(&model.recorder(), &RecordingController::stateChanged, this, [this] {
        refreshStopText();
        Q_EMIT stateChanged();
    });
    connect(&model.recorder(), &RecordingController::ticked, this, &RecordAction::refreshStopText);
    refreshStopText();
}

bool RecordAction::isBusy() const {
    return varnic::isBusy(model_.recorder().state());
}

bool RecordAction::isEnabled() const {
    return SessionLogic::toggle(model_.recorder().state(), true) != SessionLogic::Action::none;
}

QString RecordAction::help() const {
    return QString::fromStdString(
        Wording::shown(isBusy() ? "Stop recording and save the call"
                                : "Record this Mac’s call audio and your microphone — no bot joins"));
}

QString RecordAction::accessibleName() const {
    return isBusy() ? QStringLiteral("Stop recording") : QStringLiteral("Record call");
}

/// The recorder's state changes 20 times a second, the text once.
void RecordAction::refreshStopText() {
    const QString text = "Stop · " + QString::fromStdString(Clock::stamp(model_.recorder().elapsed()));
    if (std::exchange(stopText_, text) != text) {
        Q_EMIT stopTextChanged();
    }
}

} // namespace varnic
