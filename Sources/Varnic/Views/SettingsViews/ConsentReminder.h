#pragma once

#include "Varnic/AppModel/AppModel.h"

#include <QList>
#include <QObject>
#include <QQmlEngine>
#include <QString>
#include <QtQmlIntegration>

#include <vector>

namespace varnic {

/// The reminder to tell the other party, before a recording. Main thread.
class ConsentReminder : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString body READ body CONSTANT)
    /// How the user sees that a recording runs.
    Q_PROPERTY(QString promise READ promise CONSTANT)
    Q_PROPERTY(QList<QString> tones READ tones CONSTANT)
    Q_PROPERTY(int tone READ tone WRITE setTone NOTIFY messageChanged)
    /// To be pasted into the call's chat.
    Q_PROPERTY(QString message READ message NOTIFY messageChanged)
    Q_PROPERTY(bool remindsEveryTime READ remindsEveryTime WRITE setRemindsEveryTime NOTIFY remindsEveryTimeChanged)

public:
    static ConsentReminder* create(const QQmlEngine* engine, const QJSEngine* scripts);

    explicit ConsentReminder(AppModel& model, QObject* parent = nullptr);

    [[nodiscard]] static QString title();
    [[nodiscard]] static QString body();
    [[nodiscard]] static QString promise();
    [[nodiscard]] static QList<QString> tones();

    [[nodiscard]] int tone() const { return static_cast<int>(model_.settings.headsUpTone.value()); }

    void setTone(int tone);
    [[nodiscard]] QString message() const;

    [[nodiscard]] bool remindsEveryTime() const { return model_.settings.remindEveryTime.value(); }

    void setRemindsEveryTime(bool reminds) { model_.settings.remindEveryTime = reminds; }

    Q_INVOKABLE void copy() { model_.copyHeadsUp(); }

    Q_INVOKABLE void accept() { model_.consentAccepted(); }

    Q_INVOKABLE void cancel() { model_.showConsent = false; }

Q_SIGNALS:
    void messageChanged();
    void remindsEveryTimeChanged();

private:
    AppModel& model_;
    std::vector<QPropertyNotifier> watchers_;
};

} // namespace varnic
