#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QMap>
#include <QObject>
#include <QVariantMap>

/// The desktop's settings portal as far as a look needs it, on the session bus. For the tests, which have a bus of
/// their own.
class FakePortal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    FakePortal();

    /// Changes a setting as a user does in the desktop's settings.
    Q_INVOKABLE void change(const QString& space, const QString& key, const QDBusVariant& value);
    /// For QML, which knows no unsigned numbers.
    Q_INVOKABLE void changeNumber(const QString& space, const QString& key, uint value);
    Q_INVOKABLE void changeSwitch(const QString& space, const QString& key, bool value);
    /// What a program sees where no portal has an opinion.
    Q_INVOKABLE static void setApplicationPalette(bool dark);

    // NOLINTBEGIN(readability-identifier-naming): the portal's names
public Q_SLOTS:
    [[nodiscard]] QMap<QString, QVariantMap> ReadAll(const QStringList& spaces) const;

Q_SIGNALS:
    void SettingChanged(const QString& space, const QString& key, const QDBusVariant& value);
    // NOLINTEND(readability-identifier-naming)

private:
    QDBusConnection bus_;
    QMap<QString, QVariantMap> settings_;
};
