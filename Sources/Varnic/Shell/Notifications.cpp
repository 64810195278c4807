#include "Varnic/Shell/Notifications.h"

#include "Varnic/Recording/RecordingController.h"
#include "Varnic/Shell/Activation.h"
#include "VarnicCore/Models/Wording.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <fmt/format.h>

#include <utility>

namespace varnic {

namespace {

constexpr const char* service = "org.freedesktop.Notifications";
constexpr const char* path = "/org/freedesktop/Notifications";
/// The action of a click on the notification itself.
constexpr const char* defaultAction = "default";

QDBusMessage notify(const std::string& text, bool isUrgent) {
    // By the desktop notifications specification.
    constexpr uchar normal = 1;
    constexpr uchar critical = 2;
    constexpr int serversChoice = -1;
    const QVariantMap hints{{"desktop-entry", "app.brevin.Varnic"},
                            {"urgency", QVariant::fromValue(isUrgent ? critical : normal)}};
    auto message = QDBusMessage::createMethodCall(service, path, service, "Notify");
    // All stands in the summary, which is plain text everywhere; the body may be markup.
    message << "Varnic" << 0U << "app.brevin.Varnic" << QString::fromStdString(text) << ""
            << QStringList{defaultAction, "Show"} << hints << serversChoice;
    return message;
}

std::set<Uuid> keysOf(const std::map<Uuid, ProcessingStage>& stages) {
    std::set<Uuid> ids;
    for (const auto& [id, stage] : stages) {
        ids.insert(id);
    }
    return ids;
}

} // namespace

Notifications::Notifications(AppModel& model, QObject* parent) : QObject(parent), model_(model) {
    processingWatcher_ = model.processing.addNotifier([this] { onProcessingChanged(); });
    toastWatcher_ = model.toast.addNotifier([this] {
        if (const auto& toast = model_.toast.value(); toast && toast->symbol == warningSymbol && !isToastInSight()) {
            post(Wording::shown(toast->text), std::nullopt, true);
        }
    });
    connect(&model.recorder(), &RecordingController::warningChanged, this, [this] {
        if (const auto& warning = model_.recorder().warning()) {
            post(Wording::shown(*warning), std::nullopt, true);
        }
    });
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect(service, path, service, "ActivationToken", this, SLOT(onActivationToken(uint, QString)));
    bus.connect(service, path, service, "ActionInvoked", this, SLOT(onActionInvoked(uint, QString)));
    bus.connect(service, path, service, "NotificationClosed", this, SLOT(onClosed(uint, uint)));
}

void Notifications::onProcessingChanged() {
    std::set<Uuid> now = keysOf(model_.processing.value());
    for (const Uuid& id : processing_) {
        if (!now.contains(id)) {
            // The note has its transcript when the flow that has just begun to end is through.
            QMetaObject::invokeMethod(this, [this, id] { tellFiled(id); }, Qt::QueuedConnection);
        }
    }
    processing_ = std::move(now);
}

void Notifications::tellFiled(const Uuid& id) {
    const Note* note = model_.note(id);
    if (note == nullptr || !note->call || model_.processing.value().contains(id)) {
        return;
    }
    const char* text =
        note->call->problem && note->call->segments.empty() ? "“{}” couldn’t be written down" : "“{}” is written down";
    post(fmt::format(fmt::runtime(text), note->displayTitle()), id, false);
}

void Notifications::post(const std::string& text, std::optional<Uuid> note, bool isUrgent) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (isWindowInFront() || model_.isDemo || !bus.isConnected()) {
        return;
    }
    const QDBusPendingCall call = bus.asyncCall(notify(text, isUrgent));
    auto* watcher = new QDBusPendingCallWatcher(call, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, note] {
        watcher->deleteLater();
        if (const QDBusPendingReply<uint> reply = *watcher; !reply.isError()) {
            shown_.insert_or_assign(reply.value(), note);
        }
    });
}

void Notifications::onActivationToken(uint notification, const QString& token) {
    if (shown_.contains(notification)) {
        tokens_.insert_or_assign(notification, token.toStdString());
    }
}

void Notifications::onActionInvoked(uint notification, const QString& action) {
    const auto found = shown_.find(notification);
    if (found == shown_.end() || action != defaultAction) {
        return;
    }
    if (const auto note = found->second; note && model_.note(note) != nullptr) {
        model_.query = std::string();
        if (model_.section.value() != LibrarySection::calls) {
            model_.section = LibrarySection::all;
        }
        model_.selection = note;
    }
    if (const auto token = tokens_.find(notification); token != tokens_.end()) {
        useActivationToken(token->second);
    }
    model_.desktop.activate();
}

void Notifications::onClosed(uint notification, uint /*reason*/) {
    shown_.erase(notification);
    tokens_.erase(notification);
}

} // namespace varnic
