#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QVariantMap>
#include <QtQmlIntegration>

namespace varnic {

/// How the desktop wants programs to look, followed while the program runs. The settings portal says so; where there is
/// none, or none with an opinion, dark follows from the application's palette and things move. Main thread.
class Appearance : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool dark READ dark NOTIFY darkChanged)
    Q_PROPERTY(bool reduceMotion READ reduceMotion NOTIFY reduceMotionChanged)

public:
    explicit Appearance(QObject* parent = nullptr);

    [[nodiscard]] bool dark() const { return dark_; }

    /// Whether things should stay where they are rather than move.
    [[nodiscard]] bool reduceMotion() const { return reduceMotion_; }

Q_SIGNALS:
    void darkChanged();
    void reduceMotionChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private Q_SLOTS:
    void settingChanged(const QDBusMessage& message);

private:
    void readAll();
    void refresh();

    QDBusConnection bus_ = QDBusConnection::sessionBus();
    /// What the portal reported, by "<namespace> <key>".
    QVariantMap settings_;
    bool dark_ = false;
    bool reduceMotion_ = false;
};

} // namespace varnic
