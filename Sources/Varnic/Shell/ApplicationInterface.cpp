#include "Varnic/Shell/ApplicationInterface.h"

#include <QUrl>

#include <utility>

namespace varnic {

namespace {

constexpr const char* activationToken = "activation-token";
/// What tokens were called before Wayland.
constexpr const char* startupID = "desktop-startup-id";

std::string token(const QVariantMap& platformData) {
    const QString token = platformData.value(activationToken).toString();
    return (token.isEmpty() ? platformData.value(startupID).toString() : token).toStdString();
}

} // namespace

QString ApplicationInterface::objectPath(QString busName) {
    return "/" + busName.replace('.', '/').replace('-', '_');
}

QVariantMap ApplicationInterface::platformData(const Request& request) {
    if (request.activationToken.empty()) {
        return {};
    }
    const QString token = QString::fromStdString(request.activationToken);
    return {{activationToken, token}, {startupID, token}};
}

void ApplicationInterface::Activate(const QVariantMap& platformData) {
    instance_.take({.kind = Request::Kind::activate, .files = {}, .activationToken = token(platformData)});
}

void ApplicationInterface::Open(const QStringList& uris, const QVariantMap& platformData) {
    Request request{.kind = Request::Kind::importFiles, .files = {}, .activationToken = token(platformData)};
    for (const QString& uri : uris) {
        // What isn't a file is reported as unreadable later on.
        const QUrl url(uri);
        request.files.emplace_back((url.isLocalFile() ? url.toLocalFile() : uri).toStdString());
    }
    instance_.take(std::move(request));
}

void ApplicationInterface::ActivateAction(const QString& action, const QVariantList& /*parameters*/,
                                          const QVariantMap& platformData) {
    const auto kind = action == toggleRecording ? Request::Kind::toggleRecording : Request::Kind::activate;
    instance_.take({.kind = kind, .files = {}, .activationToken = token(platformData)});
}

} // namespace varnic
