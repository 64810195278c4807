#pragma once

#include "Varnic/Shell/SingleInstance.h"

#include <QDBusAbstractAdaptor>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

#include <array>

namespace varnic {

/// How desktops and other starts of the program call this one (freedesktop.org, desktop entries, "D-Bus activation").
class ApplicationInterface : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    static constexpr const char* name = "org.freedesktop.Application";

    /// An action, and what it asks for.
    struct Action {
        const char* name;
        Request::Kind kind;
    };

    /// Those of the desktop entry, and what a key of the desktop's own can be bound to.
    static constexpr std::array actions{
        Action{"new-note", Request::Kind::newNote}, Action{"record-call", Request::Kind::recordCall},
        Action{"open-library", Request::Kind::openLibrary}, Action{"toggle-recording", Request::Kind::toggleRecording}};

    explicit ApplicationInterface(SingleInstance* instance) : QDBusAbstractAdaptor(instance), instance_(*instance) {}

    /// Of the object that has the interface: "/a/b/C" for "a.b.C".
    static QString objectPath(QString busName);

    /// The words that come with a request.
    static QVariantMap platformData(const Request& request);

public Q_SLOTS:
    // The D-Bus interface has these names.
    // NOLINTBEGIN(readability-identifier-naming)
    void Activate(const QVariantMap& platformData);
    void Open(const QStringList& uris, const QVariantMap& platformData);
    void ActivateAction(const QString& action, const QVariantList& parameters, const QVariantMap& platformData);
    // NOLINTEND(readability-identifier-naming)

private:
    SingleInstance& instance_;
};

} // namespace varnic
