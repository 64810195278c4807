#include "Varnic/Views/SettingsViews/KeySettings.h"

#include "Varnic/Views/Context/ViewContext.h"
#include "VarnicCore/Models/Wording.h"

#include <QPointer>

#include <chrono>
#include <utility>

namespace varnic {

namespace {

using namespace std::chrono_literals;

/// How long the button says that the key is saved.
constexpr auto moment = 2s;

} // namespace

KeySettings* KeySettings::create(const QQmlEngine* engine, const QJSEngine* /*scripts*/) {
    return new KeySettings(ViewContext::of(*engine).model);
}

KeySettings::KeySettings(AppModel& model, QObject* parent) : QObject(parent), model_(model), account_(account()) {
    justSaved_.setSingleShot(true);
    justSaved_.setInterval(moment);
    connect(&justSaved_, &QTimer::timeout, this, &KeySettings::changed);
    statusWatcher_ = model.apiKey.status.addNotifier([this] { Q_EMIT changed(); });
    providerWatcher_ = model.settings.ai.addNotifier([this] { follow(); });
}

/// What was saved or went wrong for one provider says nothing of another's key.
void KeySettings::follow() {
    if (std::exchange(account_, account()) != account_) {
        justSaved_.stop();
        Q_EMIT providerChanged();
    }
    take(std::nullopt);
}

QString KeySettings::savedText() {
    return QString::fromStdString(Wording::shown("•••••••• saved in your Keychain"));
}

QString KeySettings::problem() const {
    const APIKey::Status& status = model_.apiKey.status.value();
    QString problem = QString::fromStdString(Wording::shown(problem_.empty() ? status.problem : problem_));
    if (status.state == KeyState::noKeyRing) {
        problem += problem.endsWith('.') ? " " : ". ";
        problem += QStringLiteral("Install one, such as the package gnome-keyring, and log in again.");
    }
    return problem;
}

void KeySettings::take(const std::optional<std::string>& problem) {
    problem_ = problem.value_or("");
    Q_EMIT changed();
}

QCoro::Task<> KeySettings::saveKey(std::string pasted) {
    if (isBusy()) {
        co_return;
    }
    const QPointer self(this);
    const std::string account = account_;
    auto saving = model_.apiKey.save(std::move(pasted));
    const std::optional<std::string> problem = co_await saving;
    if (!self) {
        co_return;
    }
    if (account != account_) {
        if (problem) {
            model_.flash({.text = "Couldn’t save the key to the Keychain", .symbol = warningSymbol});
        }
        co_return;
    }
    if (!problem) {
        justSaved_.start();
        Q_EMIT saved();
    }
    take(problem);
}

QCoro::Task<> KeySettings::removeKey() {
    const QPointer self(this);
    const std::string account = account_;
    auto removing = model_.apiKey.remove();
    const std::optional<std::string> problem = co_await removing;
    if (self && account == account_) {
        take(problem);
    } else if (self && problem) {
        model_.flash({.text = "Couldn’t remove the key from the Keychain", .symbol = warningSymbol});
    }
}

} // namespace varnic
