#pragma once

#include "Varnic/AppModel/AppModel.h"

#include <QObject>
#include <QQmlEngine>
#include <QtQmlIntegration>

namespace varnic {

/// The record button, wherever it stands. Main thread.
class RecordAction : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool isBusy READ isBusy NOTIFY stateChanged)
    /// A press means something: not while a recording is about to start or stop.
    Q_PROPERTY(bool isEnabled READ isEnabled NOTIFY stateChanged)
    /// "Stop · 2:05".
    Q_PROPERTY(QString stopText READ stopText NOTIFY stopTextChanged)
    Q_PROPERTY(QString help READ help NOTIFY stateChanged)
    Q_PROPERTY(QString accessibleName READ accessibleName NOTIFY stateChanged)

public:
    static RecordAction* create(const QQmlEngine* engine, const QJSEngine* scripts);

    explicit RecordAction(AppModel& model, QObject* parent = nullptr);

    [[nodiscard]] bool isBusy() const;
    [[nodiscard]] bool isEnabled() const;

    [[nodiscard]] QString stopText() const { return stopText_; }

    [[nodiscard]] QString help() const;
    [[nodiscard]] QString accessibleName() const;

    Q_INVOKABLE void toggle() { model_.toggleRecording(); }

Q_SIGNALS:
    void stateChanged();
    void stopTextChanged();

private:
    void refreshStopText();

    AppModel& model_;
    QString stopText_;
};

} // namespace varnic
