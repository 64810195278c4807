#include "Varnic/Views/SettingsViews/ServerCheck.h"

#include "Varnic/Views/Context/ViewContext.h"
#include "VarnicCore/Models/Wording.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace varnic {

ServerCheck* ServerCheck::create(const QQmlEngine* engine, const QJSEngine* /*scripts*/) {
    return new ServerCheck(ViewContext::of(*engine).model);
}

ServerCheck::ServerCheck(AppModel& model, QObject* parent) : QObject(parent), model_(model) {
    watcher_ = model.settings.ai.addNotifier([this] { follow(); });
}

/// What one address answered says nothing of another.
void ServerCheck::follow() {
    if (model_.settings.ai.value().compatBaseURL != asked_) {
        answer_ = std::nullopt;
    }
    Q_EMIT changed();
}

QString ServerCheck::addressProblem() const {
    const std::string address = model_.settings.ai.value().compatBaseURL;
    return QString::fromStdString(Wording::shown(ServerModels::problemOf(address).value_or("")));
}

QString ServerCheck::sentence() const {
    return answer_ ? QString::fromStdString(Wording::shown(answer_->sentence)) : QString();
}

QList<QString> ServerCheck::models() const {
    QList<QString> names;
    if (answer_) {
        std::ranges::transform(answer_->models, std::back_inserter(names), &QString::fromStdString);
    }
    return names;
}

int ServerCheck::model() const {
    return static_cast<int>(models().indexOf(QString::fromStdString(model_.settings.ai.value().compatModel)));
}

void ServerCheck::setModel(int model) {
    AISettings ai = model_.settings.ai.value();
    ai.compatModel = models().at(model).toStdString();
    model_.settings.ai = ai;
}

QCoro::Task<> ServerCheck::askServer() {
    if (std::exchange(isAsking_, true)) {
        co_return;
    }
    asked_ = model_.settings.ai.value().compatBaseURL;
    answer_ = std::nullopt;
    Q_EMIT changed();
    const QPointer self(this);
    auto asking = model_.askServer();
    ServerAnswer answer = co_await asking;
    if (!self) {
        co_return;
    }
    isAsking_ = false;
    if (model_.settings.ai.value().compatBaseURL == asked_) {
        answer_ = std::move(answer);
    }
    Q_EMIT changed();
}

} // namespace varnic
