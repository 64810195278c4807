#include "Varnic/Shell/RecordingNotice.h"

#include "Varnic/Shell/Activation.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace varnic {

namespace {

constexpr const char* service = "org.freedesktop.Notifications";
constexpr const char* path = "/org/freedesktop/Notifications";
constexpr const char* showAction = "default";
constexpr const char* stopAction = "stop";

QDBusMessage call(const char* method) {
    return QDBusMessage::createMethodCall(service, path, service, method);
}

QDBusMessage notify() {
    // By the desktop notifications specification. A critical one stays in sight, a resident one outlives a click; its
    // sound would be heard in the call.
    constexpr uchar critical = 2;
    constexpr int never = 0;
    const QVariantMap hints{{"desktop-entry", "app.brevin.Varnic"},
                            {"urgency", QVariant::fromValue(critical)},
                            {"resident", true},
                            {"suppress-sound", true}};
    QDBusMessage message = call("Notify");
    message << "Varnic" << 0U << "app.brevin.Varnic" << "Varnic is recording" << ""
            << QStringList{showAction, "Show", stopAction, "Stop & Save"} << hints << never;
    return message;
}

} // namespace

RecordingNotice::RecordingNotice(AppModel& model, QObject* parent) : QObject(parent), model_(model) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect(service, path, service, "ActionInvoked", this, SLOT(onActionInvoked(uint, QString)));
    bus.connect(service, path, service, "ActivationToken", this, SLOT(onActivationToken(uint, QString)));
}

void RecordingNotice::present() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    isWanted_ = true;
    if (id_ || isAsked_ || !bus.isConnected()) {
        return;
    }
    isAsked_ = true;
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(notify()), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        isAsked_ = false;
        if (const QDBusPendingReply<uint> reply = *watcher; !reply.isError()) {
            id_ = reply.value();
        }
        closeUnwanted();
    });
}

void RecordingNotice::orderOut() {
    isWanted_ = false;
    closeUnwanted();
}

void RecordingNotice::closeUnwanted() {
    if (id_ && !isWanted_) {
        QDBusMessage message = call("CloseNotification");
        message << *id_;
        QDBusConnection::sessionBus().send(message);
        id_.reset();
    }
}

void RecordingNotice::onActionInvoked(uint notification, const QString& action) {
    if (id_ != notification) {
        return;
    }
    if (action == stopAction) {
        model_.stopRecording();
    } else {
        model_.desktop.activate();
    }
}

void RecordingNotice::onActivationToken(uint notification, const QString& token) {
    if (id_ == notification) {
        useActivationToken(token.toStdString());
    }
}

} // namespace varnic
