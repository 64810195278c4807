#include "Varnic/Shell/ApplicationInterface.h"

#include "VarnicCore/Models/NoteAddress.h"

#include <QUrl>

#include <algorithm>
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
        if (NoteAddress::isMeant(uri.toStdString())) {
            instance_.take({.kind = Request::Kind::openAddress,
                            .files = {},
                            .activationToken = token(platformData),
                            .address = uri.toStdString()});
            continue;
        }
        // What isn't a file is reported as unreadable later on.
        const QUrl url(uri);
        request.files.emplace_back((url.isLocalFile() ? url.toLocalFile() : uri).toStdString());
    }
    if (!request.files.empty()) {
        instance_.take(std::move(request));
    }
}

void ApplicationInterface::ActivateAction(const QString& action, const QVariantList& /*parameters*/,
                                          const QVariantMap& platformData) {
    const auto known = std::ranges::find_if(actions, [&action](const Action& one) { return action == one.name; });
    instance_.take({.kind = known == actions.end() ? Request::Kind::activate : known->kind,
                    .files = {},
                    .activationToken = token(platformData)});
}

} // namespace varnic
