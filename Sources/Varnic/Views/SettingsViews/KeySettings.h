#pragma once

#include "Varnic/AppModel/AppModel.h"

#include <QObject>
#include <QQmlEngine>
#include <QTimer>
#include <QtQmlIntegration>

namespace varnic {

/// The key for the AI provider that is chosen. It never comes out of here. Main thread.
class KeySettings : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// "•••••••• saved in your key ring".
    Q_PROPERTY(QString savedText READ savedText CONSTANT)
    Q_PROPERTY(bool isSaved READ isSaved NOTIFY changed)
    /// It was saved a moment ago.
    Q_PROPERTY(bool isJustSaved READ isJustSaved NOTIFY changed)
    /// The key ring has been asked and hasn't answered yet.
    Q_PROPERTY(bool isBusy READ isBusy NOTIFY changed)
    /// It may be there once the key ring can be asked again.
    Q_PROPERTY(bool canLookAgain READ canLookAgain NOTIFY changed)
    /// Why it can't be read, saved or removed; else empty.
    Q_PROPERTY(QString problem READ problem NOTIFY changed)

public:
    static KeySettings* create(const QQmlEngine* engine, const QJSEngine* scripts);

    explicit KeySettings(AppModel& model, QObject* parent = nullptr);

    [[nodiscard]] static QString savedText();

    [[nodiscard]] bool isSaved() const { return model_.hasKey(); }

    [[nodiscard]] bool isJustSaved() const { return justSaved_.isActive(); }

    [[nodiscard]] bool isBusy() const { return model_.apiKey.status.value().isBusy; }

    [[nodiscard]] bool canLookAgain() const { return !isBusy() && !model_.apiKey.status.value().problem.empty(); }

    [[nodiscard]] QString problem() const;

    /// Asks the key ring.
    Q_INVOKABLE void look() { model_.apiKey.read(); }

    /// Saves what was pasted, unless the key ring is busy; `saved` follows where that goes well.
    Q_INVOKABLE void save(const QString& pasted) { saveKey(pasted.toStdString()); }

    Q_INVOKABLE void remove() { removeKey(); }

Q_SIGNALS:
    void changed();
    void saved();
    /// Another provider is chosen: what was typed is no key of that one.
    void providerChanged();

private:
    QCoro::Task<> saveKey(std::string pasted);
    QCoro::Task<> removeKey();
    void follow();

    [[nodiscard]] std::string account() const { return model_.settings.ai.value().keyAccount(); }

    void take(const std::optional<std::string>& problem);

    AppModel& model_;
    /// The account of the provider that is chosen.
    std::string account_;
    QTimer justSaved_;
    /// Of the last attempt to save or remove it.
    std::string problem_;
    QPropertyNotifier statusWatcher_;
    QPropertyNotifier providerWatcher_;
};

} // namespace varnic
