#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/Shell/AppDelegate.h"

#include <QList>
#include <QObject>
#include <QQmlEngine>
#include <QtQmlIntegration>

#include <vector>

namespace varnic {

/// The user, how the program shows itself, and the reminder to tell people. Main thread.
class GeneralSettings : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString yourName READ yourName WRITE setYourName NOTIFY changed)
    Q_PROPERTY(bool showPill READ showPill WRITE setShowPill NOTIFY changed)
    /// The reminder would not come again by itself.
    Q_PROPERTY(bool isReminderSeen READ isReminderSeen NOTIFY changed)
    /// The desktop starts the program in the background when the user logs in.
    Q_PROPERTY(bool startsAtLogin READ startsAtLogin WRITE setStartsAtLogin NOTIFY changed)
    /// What the desktop lacks and what to install, a sentence each.
    Q_PROPERTY(QList<QString> missing READ missing NOTIFY changed)
    /// What stands for the pill; else empty.
    Q_PROPERTY(QString pillNote READ pillNote NOTIFY changed)
    /// What the desktop refused; else empty.
    Q_PROPERTY(QString loginProblem READ loginProblem NOTIFY changed)
    /// About settings that could not be read or can't be saved; else empty.
    Q_PROPERTY(QString storeProblem READ storeProblem NOTIFY changed)

public:
    static GeneralSettings* create(const QQmlEngine* engine, const QJSEngine* scripts);

    /// `shell` may be null.
    GeneralSettings(AppModel& model, AppDelegate* shell, QObject* parent = nullptr);

    [[nodiscard]] QString yourName() const { return QString::fromStdString(model_.settings.yourName.value()); }

    void setYourName(const QString& name) { model_.settings.yourName = name.toStdString(); }

    [[nodiscard]] bool showPill() const { return model_.settings.showPill.value(); }

    void setShowPill(bool shows) { model_.settings.showPill = shows; }

    [[nodiscard]] bool isReminderSeen() const { return model_.settings.consentSeen.value(); }

    Q_INVOKABLE void showReminderAgain() { model_.settings.consentSeen = false; }

    [[nodiscard]] bool startsAtLogin() const;
    void setStartsAtLogin(bool starts);
    [[nodiscard]] QList<QString> missing() const;
    [[nodiscard]] QString pillNote() const;
    [[nodiscard]] QString loginProblem() const;
    [[nodiscard]] QString storeProblem() const;

    /// Looks what the desktop says now.
    Q_INVOKABLE void look();

Q_SIGNALS:
    void changed();

private:
    AppModel& model_;
    AppDelegate* shell_;
    DesktopParts desktop_;
    std::vector<QPropertyNotifier> watchers_;
};

} // namespace varnic
