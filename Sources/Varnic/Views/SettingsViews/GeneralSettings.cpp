#include "Varnic/Views/SettingsViews/GeneralSettings.h"

#include "Varnic/AppModel/SettingsFile.h"
#include "Varnic/Views/Context/ViewContext.h"

namespace varnic {

GeneralSettings* GeneralSettings::create(const QQmlEngine* engine, const QJSEngine* /*scripts*/) {
    const ViewContext& context = ViewContext::of(*engine);
    return new GeneralSettings(context.model, context.shell);
}

GeneralSettings::GeneralSettings(AppModel& model, AppDelegate* shell, QObject* parent)
    : QObject(parent), model_(model), shell_(shell) {
    const auto follow = [this](auto& property) {
        watchers_.push_back(property.addNotifier([this] { Q_EMIT changed(); }));
    };
    follow(model.settings.yourName);
    follow(model.settings.showPill);
    follow(model.settings.consentSeen);
    follow(model.settings.problem);
    follow(model.settings.isLibraryLost);
    if (shell != nullptr) {
        follow(shell->loginStart().isOn);
        follow(shell->loginStart().problem);
    }
}

bool GeneralSettings::startsAtLogin() const {
    return shell_ != nullptr && shell_->loginStart().isOn.value();
}

void GeneralSettings::setStartsAtLogin(bool starts) {
    if (shell_ != nullptr) {
        shell_->loginStart().set(starts);
    }
}

QList<QString> GeneralSettings::missing() const {
    QList<QString> sentences;
    for (const MissingPart& part : MissingParts::of(desktop_)) {
        sentences << QString::fromStdString(part.sentence);
    }
    return sentences;
}

QString GeneralSettings::pillNote() const {
    return QString::fromStdString(MissingParts::pillNote(desktop_));
}

QString GeneralSettings::loginProblem() const {
    return shell_ == nullptr ? QString() : QString::fromStdString(shell_->loginStart().problem.value());
}

QString GeneralSettings::storeProblem() const {
    const std::string problem = model_.settings.problem.value().value_or("");
    const std::string lost = model_.settings.isLibraryLost.value() ? SettingsFile::libraryLost : "";
    return QString::fromStdString(problem + (problem.empty() || lost.empty() ? "" : " ") + lost);
}

void GeneralSettings::look() {
    if (shell_ != nullptr) {
        shell_->loginStart().look();
        desktop_ = shell_->hooks.desktopParts();
        Q_EMIT changed();
    }
}

} // namespace varnic
