#include "Varnic/Shell/SingleInstance.h"

#include "Varnic/Shell/ApplicationInterface.h"
#include "VarnicCore/Files/Folders.h"
#include "VarnicCore/Files/LibraryError.h"

#include <QCryptographicHash>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QUrl>

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace varnic {

namespace {

constexpr const char* applicationID = "app.brevin.Varnic";

/// What a running program may take to answer.
constexpr std::chrono::milliseconds patience = std::chrono::seconds(10);

QStringList uris(const Request& request) {
    QStringList uris;
    for (const auto& file : request.files) {
        uris.push_back(QUrl::fromLocalFile(QString::fromStdString(file.string())).toString(QUrl::FullyEncoded));
    }
    return uris;
}

QDBusMessage call(const QString& busName, const Request& request) {
    const auto method = [&busName](const char* name) {
        return QDBusMessage::createMethodCall(busName, ApplicationInterface::objectPath(busName),
                                              ApplicationInterface::name, name);
    };
    const QVariantMap data = ApplicationInterface::platformData(request);
    QDBusMessage message;
    switch (request.kind) {
    case Request::Kind::activate:
        message = method("Activate");
        message << data;
        break;
    case Request::Kind::importFiles:
        message = method("Open");
        message << uris(request) << data;
        break;
    case Request::Kind::openAddress:
        message = method("Open");
        message << QStringList(QString::fromStdString(request.address)) << data;
        break;
    case Request::Kind::openLibrary:
    case Request::Kind::newNote:
    case Request::Kind::recordCall:
    case Request::Kind::toggleRecording:
        message = method("ActivateAction");
        message << QString(std::ranges::find(ApplicationInterface::actions, request.kind,
                                             &ApplicationInterface::Action::kind)
                               ->name)
                << QVariantList() << data;
        break;
    case Request::Kind::background:
        // Whoever answers runs.
        message = QDBusMessage::createMethodCall(busName, ApplicationInterface::objectPath(busName),
                                                 "org.freedesktop.DBus.Peer", "Ping");
        break;
    }
    message.setAutoStartService(false);
    return message;
}

} // namespace

SingleInstance::SingleInstance(std::filesystem::path library, QString busName, QObject* parent)
    : QObject(parent), library_(std::move(library)), busName_(std::move(busName)) {
    new ApplicationInterface(this);
}

SingleInstance::~SingleInstance() {
    releaseName();
}

QString SingleInstance::busNameFor(const std::filesystem::path& library, bool isScratch) {
    if (!isScratch) {
        return applicationID;
    }
    const std::filesystem::path folder = std::filesystem::weakly_canonical(library);
    const QByteArray hash =
        QCryptographicHash::hash(QByteArray::fromStdString(folder.string()), QCryptographicHash::Sha256).toHex();
    constexpr int enough = 16;
    return QString("%1.Library_%2").arg(applicationID, QString::fromLatin1(hash.left(enough)));
}

SingleInstance::Outcome SingleInstance::claim(const Request& request) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (bus.isConnected()) {
        // Whoever learns of the name may call at once.
        bus.registerObject(ApplicationInterface::objectPath(busName_), this);
        // The other program may be about to end; then its name is free.
        constexpr int attempts = 3;
        for (int attempt = 0; attempt < attempts && !hasName_; ++attempt) {
            hasName_ = bus.registerService(busName_);
            if (!hasName_ && handOver(request)) {
                return Outcome::handedOver;
            }
        }
        if (!hasName_) {
            problem_ = "Varnic is running already, but doesn’t answer.";
            return Outcome::refused;
        }
    }
    if (!takeLibrary()) {
        releaseName();
        return Outcome::refused;
    }
    return Outcome::first;
}

bool SingleInstance::handOver(const Request& request) {
    const QDBusMessage answer =
        QDBusConnection::sessionBus().call(call(busName_, request), QDBus::Block, static_cast<int>(patience.count()));
    return answer.type() == QDBusMessage::ReplyMessage;
}

bool SingleInstance::takeLibrary() {
    try {
        Folders::make(library_);
        lock_ = LibraryLock::forApplication(library_);
        if (!lock_) {
            const auto process = LibraryLock::application(library_);
            const std::string who = process ? fmt::format(" (process {})", *process) : std::string();
            problem_ = QDBusConnection::sessionBus().isConnected()
                           ? fmt::format("Varnic is open already in another session{}.", who)
                           : fmt::format("Varnic is open already{}. Without a D-Bus session its window can’t be "
                                         "brought to the front; on Debian, install dbus-user-session and log in again.",
                                         who);
        }
    } catch (const LibraryError& error) {
        problem_ = error.what();
    }
    return lock_.has_value();
}

void SingleInstance::follow(std::filesystem::path library) {
    library_ = std::move(library);
    try {
        if (auto lock = LibraryLock::forApplication(library_)) {
            lock_ = std::move(lock);
        }
    } catch (const LibraryError&) {
        // The name on the bus tells of this program all the same.
    }
}

void SingleInstance::releaseName() {
    if (std::exchange(hasName_, false)) {
        QDBusConnection::sessionBus().unregisterService(busName_);
    }
}

void SingleInstance::setHandler(std::function<void(Request)> handler) {
    handler_ = std::move(handler);
    for (Request& request : std::exchange(waiting_, {})) {
        handler_(std::move(request));
    }
}

void SingleInstance::take(Request request) {
    if (handler_) {
        handler_(std::move(request));
    } else {
        waiting_.push_back(std::move(request));
    }
}

} // namespace varnic
