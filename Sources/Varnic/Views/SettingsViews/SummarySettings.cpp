#include "Varnic/Views/SettingsViews/SummarySettings.h"

#include "Varnic/Views/Context/ViewContext.h"
#include "VarnicCore/Models/Wording.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

namespace varnic {

namespace {

QString shown(std::string_view text) {
    return QString::fromStdString(Wording::shown(text));
}

} // namespace

SummarySettings* SummarySettings::create(const QQmlEngine* engine, const QJSEngine* /*scripts*/) {
    return new SummarySettings(ViewContext::of(*engine).model);
}

SummarySettings::SummarySettings(AppModel& model, QObject* parent) : QObject(parent), model_(model) {
    watcher_ = model.settings.ai.addNotifier([this] { Q_EMIT changed(); });
}

void SummarySettings::change(const std::function<void(AISettings&)>& edit) {
    AISettings fresh = ai();
    edit(fresh);
    model_.settings.ai = fresh;
}

QString SummarySettings::ownSummaries() {
    return shown("Varnic’s own summary, to-dos and email are made on this Mac for every call, with no network.");
}

void SummarySettings::setEnabled(bool isEnabled) {
    change([isEnabled](AISettings& ai) { ai.enabled = isEnabled; });
}

QString SummarySettings::keyPromise() {
    return shown("Your key is stored in your Mac’s Keychain and sent only to the provider you pick.");
}

QList<QString> SummarySettings::providers() {
    QList<QString> titles;
    for (const AIProviderKind kind : allAIProviderKinds) {
        titles << shown(title(kind));
    }
    return titles;
}

void SummarySettings::setProvider(int provider) {
    change([provider](AISettings& ai) { ai.provider = allAIProviderKinds.at(static_cast<std::size_t>(provider)); });
}

QList<QString> SummarySettings::models() {
    QList<QString> names;
    for (const AIModelChoice& choice : AISettings::anthropicModels) {
        names << shown(choice.name);
    }
    return names;
}

QList<QString> SummarySettings::modelNotes() {
    QList<QString> notes;
    for (const AIModelChoice& choice : AISettings::anthropicModels) {
        notes << shown(choice.note);
    }
    return notes;
}

int SummarySettings::model() const {
    const auto found = std::ranges::find(AISettings::anthropicModels, ai().anthropicModel, &AIModelChoice::id);
    return found == AISettings::anthropicModels.end() ? -1
                                                      : static_cast<int>(found - AISettings::anthropicModels.begin());
}

void SummarySettings::setModel(int model) {
    change([model](AISettings& ai) {
        ai.anthropicModel = AISettings::anthropicModels.at(static_cast<std::size_t>(model)).id;
    });
}

QString SummarySettings::otherModel() const {
    return QString::fromStdString(ai().anthropicModel);
}

QString SummarySettings::server() const {
    return QString::fromStdString(ai().compatBaseURL);
}

void SummarySettings::setServer(const QString& server) {
    change([&server](AISettings& ai) { ai.compatBaseURL = server.toStdString(); });
}

QString SummarySettings::defaultServer() {
    return shown(AISettings::compatPresets.front().baseURL);
}

QList<QString> SummarySettings::presets() {
    QList<QString> names;
    for (const AIServerPreset& preset : AISettings::compatPresets) {
        names << shown(preset.name);
    }
    return names;
}

void SummarySettings::usePreset(int preset) {
    change([preset](AISettings& ai) {
        ai.compatBaseURL = AISettings::compatPresets.at(static_cast<std::size_t>(preset)).baseURL;
    });
}

QString SummarySettings::serverModel() const {
    return QString::fromStdString(ai().compatModel);
}

void SummarySettings::setServerModel(const QString& model) {
    change([&model](AISettings& ai) { ai.compatModel = model.toStdString(); });
}

void SummarySettings::setAsksEachTime(bool asks) {
    change([asks](AISettings& ai) { ai.askEachTime = asks; });
}

QString SummarySettings::disclosure() const {
    const std::string destination = ai().destination();
    return shown(staysHere() ? fmt::format("The transcript goes to {}. It doesn’t leave your Mac.", destination)
                             : fmt::format("When you summarise with AI, the call’s full transcript (with names you’ve "
                                           "added) is sent to {} and handled under their terms. Audio is never sent.",
                                           destination));
}

} // namespace varnic
