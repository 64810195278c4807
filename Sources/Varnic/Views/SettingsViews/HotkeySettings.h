#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/Shell/AppDelegate.h"

#include <QObject>
#include <QQmlEngine>
#include <QtQmlIntegration>

#include <vector>

namespace varnic {

/// The keys that start and stop a recording from whatever program. Main thread.
class HotkeySettings : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool isEnabled READ isEnabled WRITE setEnabled NOTIFY changed)
    /// The combinations to choose from, and the user's own if there is one, as the user reads them.
    Q_PROPERTY(QList<QString> choices READ choices NOTIFY changed)
    Q_PROPERTY(int selected READ selected WRITE setSelected NOTIFY changed)
    /// What the desktop says of the combination.
    Q_PROPERTY(QString note READ note NOTIFY changed)
    /// What to bind to keys in the desktop's settings where it offers no hotkey; else empty.
    Q_PROPERTY(QString command READ command NOTIFY changed)
    /// The next keys that are pressed in the window become the combination; it does nothing meanwhile.
    Q_PROPERTY(bool isRecording READ isRecording WRITE setRecording NOTIFY changed)
    /// Why the keys that were pressed last can't be one; else empty.
    Q_PROPERTY(QString problem READ problem NOTIFY changed)

public:
    static HotkeySettings* create(const QQmlEngine* engine, const QJSEngine* scripts);

    /// `shell` may be null.
    HotkeySettings(AppModel& model, AppDelegate* shell, QObject* parent = nullptr);

    [[nodiscard]] bool isEnabled() const { return model_.settings.hotkeyEnabled.value(); }

    void setEnabled(bool isEnabled) { model_.settings.hotkeyEnabled = isEnabled; }

    [[nodiscard]] QList<QString> choices() const;
    [[nodiscard]] int selected() const;
    void setSelected(int choice);
    [[nodiscard]] QString note() const;
    [[nodiscard]] QString command() const;

    [[nodiscard]] bool isRecording() const { return isRecording_; }

    void setRecording(bool isRecording);

    [[nodiscard]] QString problem() const { return problem_; }

    /// Takes what was pressed, as Qt tells it, if it can be a combination, and ends the recording of it then.
    Q_INVOKABLE void press(int key, int modifiers);

    Q_INVOKABLE void copyCommand() const;

Q_SIGNALS:
    void changed();

private:
    [[nodiscard]] bool hasOwn() const;

    AppModel& model_;
    AppDelegate* shell_;
    bool isRecording_ = false;
    QString problem_;
    std::vector<QPropertyNotifier> watchers_;
};

} // namespace varnic
