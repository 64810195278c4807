#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QVariantMap>
#include <QtQmlIntegration>

#include <optional>

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
    struct Look {
        bool dark = false;
        bool reduceMotion = false;

        bool operator==(const Look&) const = default;
    };

    explicit Appearance(QObject* parent = nullptr);

    /// Looks so whatever the desktop wants; follows the desktop again with nothing.
    void fix(std::optional<Look> fixed);

    [[nodiscard]] bool dark() const { return look_.dark; }

    /// Whether things should stay where they are rather than move.
    [[nodiscard]] bool reduceMotion() const { return look_.reduceMotion; }

Q_SIGNALS:
    void darkChanged();
    void reduceMotionChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private Q_SLOTS:
    void settingChanged(const QDBusMessage& message);

private:
    void readAll();
    [[nodiscard]] Look desktopsLook() const;
    void refresh();

    QDBusConnection bus_ = QDBusConnection::sessionBus();
    /// What the portal reported, by "<namespace> <key>".
    QVariantMap settings_;
    std::optional<Look> fixed_;
    Look look_;
};

} // namespace varnic
