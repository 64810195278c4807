#include "Varnic/Views/FakePortal.h"

#include <QDBusMetaType>
#include <QGuiApplication>
#include <QPalette>

FakePortal::FakePortal() : bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal"))) {
    qRegisterMetaType<QDBusVariant>("QDBusVariant");
    qDBusRegisterMetaType<QMap<QString, QVariantMap>>();
    bus_.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), this,
                        QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
    if (!bus_.registerService(QStringLiteral("org.freedesktop.portal.Desktop"))) {
        qFatal("the tests need a session bus of their own: dbus-run-session -- view-tests");
    }
}

void FakePortal::change(const QString& space, const QString& key, const QDBusVariant& value) {
    settings_[space][key] = value.variant();
    Q_EMIT SettingChanged(space, key, value);
}

void FakePortal::changeNumber(const QString& space, const QString& key, uint value) {
    change(space, key, QDBusVariant(value));
}

void FakePortal::changeSwitch(const QString& space, const QString& key, bool value) {
    change(space, key, QDBusVariant(value));
}

void FakePortal::setApplicationPalette(bool dark) {
    QGuiApplication::setPalette(QPalette(dark ? QColor(40, 40, 40) : QColor(240, 240, 240)));
}

QMap<QString, QVariantMap> FakePortal::ReadAll(const QStringList& spaces) const {
    QMap<QString, QVariantMap> found;
    for (const QString& space : spaces) {
        found.insert(space, settings_.value(space));
    }
    return found;
}
