#include "Varnic/Views/NotePage/SummaryModel.h"

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/Views/Context/ViewContext.h"
#include "VarnicCore/Models/CallProblem.h"
#include "VarnicCore/Models/Wording.h"
#include "VarnicCore/Text/Language.h"

#include <fmt/format.h>

namespace varnic {

namespace {

QString shown(const std::string& text) {
    return QString::fromStdString(Wording::shown(text));
}

} // namespace

void SummaryModel::componentComplete() {
    app_ = &ViewContext::of(this).model;
    connect(note_, &NoteModel::changed, this, &SummaryModel::changed);
    const auto tell = [this] { Q_EMIT changed(); };
    watchers_.push_back(app_->aiError.addNotifier(tell));
    watchers_.push_back(app_->settings.ai.addNotifier(tell));
    Q_EMIT changed();
}

const CallRecord* SummaryModel::call() const {
    return app_ != nullptr && note_->isCall() ? &*note_->note().call : nullptr;
}

QString SummaryModel::stage() const {
    if (app_ == nullptr) {
        return {};
    }
    const auto& stages = app_->processing.value();
    const auto found = stages.find(note_->id());
    return found == stages.end() ? QString() : shown(found->second.label());
}

QString SummaryModel::problem() const {
    const CallRecord* const call = this->call();
    return call != nullptr && call->problem && stage().isEmpty() ? shown(*call->problem) : QString();
}

bool SummaryModel::needsSettings() const {
    return !problem().isEmpty() && call()->problem->find("Speech Recognition") != std::string::npos;
}

QString SummaryModel::languageNote() const {
    const CallRecord* const call = this->call();
    const bool isTold = call != nullptr && !call->segments.empty() && stage().isEmpty();
    if (!isTold || Language::isEnglish(call->language) || hasAIDigest()) {
        return {};
    }
    const std::string name = Language::name(Language::bare(call->language), "en");
    return shown(fmt::format("Varnic finds to-dos in English only. A summary in {} takes AI{}.", name,
                             settings().enabled ? "" : ", which is turned on in Settings"));
}

bool SummaryModel::showsAI() const {
    // Lost audio is no reason not to summarise the rest.
    return call() != nullptr && settings().enabled && stage().isEmpty() && !CallProblem::withoutLoss(call()->problem);
}

AISettings SummaryModel::settings() const {
    return app_ != nullptr ? app_->settings.ai.value() : AISettings();
}

bool SummaryModel::hasAIDigest() const {
    const CallRecord* const call = this->call();
    return call != nullptr && call->digest && !call->digest->isLocal;
}

QString SummaryModel::credit() const {
    return hasAIDigest() ? shown("Summary by " + call()->digest->provider) : QString();
}

QString SummaryModel::asking() const {
    const bool runs = app_ != nullptr && app_->aiRunning.value().contains(note_->id());
    return runs ? shown(fmt::format("Asking {}…", settings().modelName())) : QString();
}

QString SummaryModel::askTitle() const {
    return hasAIDigest() ? "Summarise Again" : shown("Summarise with " + settings().modelName());
}

QString SummaryModel::askHelp() const {
    return shown("Sends this call’s transcript to " + settings().destination());
}

QString SummaryModel::localHelp() {
    return shown("Go back to the summary made on this Mac");
}

QString SummaryModel::privacy() const {
    return shown(fmt::format(fmt::runtime(settings().staysOnThisMac()
                                              ? "Your local model at {} — nothing leaves this Mac."
                                              : "The transcript is sent to {} using your key. Varnic’s own summary "
                                                "never leaves this Mac."),
                             settings().destination()));
}

bool SummaryModel::staysHere() const {
    return settings().staysOnThisMac();
}

QString SummaryModel::aiError() const {
    if (app_ == nullptr) {
        return {};
    }
    const auto& errors = app_->aiError.value();
    const auto found = errors.find(note_->id());
    return found == errors.end() ? QString() : shown(found->second);
}

void SummaryModel::openSettings() {
    app_->desktop.openSettings(SettingsRow::speech);
}

void SummaryModel::summarise() {
    app_->runAI(note_->id());
}

void SummaryModel::useLocalSummary() {
    app_->useLocalSummary(note_->id());
}

} // namespace varnic
