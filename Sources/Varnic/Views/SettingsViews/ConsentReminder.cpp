#include "Varnic/Views/SettingsViews/ConsentReminder.h"

#include "Varnic/Views/Context/ViewContext.h"
#include "VarnicCore/Models/Wording.h"
#include "VarnicCore/Pipeline/Consent.h"

namespace varnic {

namespace {

QString shown(std::string_view text) {
    return QString::fromStdString(Wording::shown(text));
}

} // namespace

ConsentReminder* ConsentReminder::create(const QQmlEngine* engine, const QJSEngine* /*scripts*/) {
    return new ConsentReminder(ViewContext::of(*engine).model);
}

ConsentReminder::ConsentReminder(AppModel& model, QObject* parent) : QObject(parent), model_(model) {
    watchers_.push_back(model.settings.headsUpTone.addNotifier([this] { Q_EMIT messageChanged(); }));
    watchers_.push_back(model.settings.yourName.addNotifier([this] { Q_EMIT messageChanged(); }));
    watchers_.push_back(model.settings.remindEveryTime.addNotifier([this] { Q_EMIT remindsEveryTimeChanged(); }));
}

QString ConsentReminder::title() {
    return shown(Consent::reminderTitle);
}

QString ConsentReminder::body() {
    return shown(Consent::reminderBody);
}

QString ConsentReminder::promise() {
    return shown(
        "While recording, the menu-bar icon turns red and a small pill shows the time. Varnic never records in "
        "the background on its own.");
}

QList<QString> ConsentReminder::tones() {
    QList<QString> titles;
    for (const Consent::Tone tone : Consent::allTones) {
        titles << shown(Consent::title(tone));
    }
    return titles;
}

void ConsentReminder::setTone(int tone) {
    model_.settings.headsUpTone = Consent::allTones.at(static_cast<std::size_t>(tone));
}

QString ConsentReminder::message() const {
    return shown(Consent::headsUp(model_.settings.headsUpTone.value(), model_.settings.yourName.value()));
}

} // namespace varnic
