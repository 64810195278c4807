#pragma once

#include "Varnic/AppModel/AppModel.h"

#include <QObject>
#include <QQmlEngine>
#include <QtQmlIntegration>

#include <functional>
#include <vector>

namespace varnic {

/// Whether and by whom an AI summarises calls. Main thread.
class SummarySettings : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// What Varnic does without an AI.
    Q_PROPERTY(QString ownSummaries READ ownSummaries CONSTANT)
    Q_PROPERTY(bool isEnabled READ isEnabled WRITE setEnabled NOTIFY changed)
    Q_PROPERTY(QString keyPromise READ keyPromise CONSTANT)
    Q_PROPERTY(QList<QString> providers READ providers CONSTANT)
    Q_PROPERTY(int provider READ provider WRITE setProvider NOTIFY changed)
    /// The provider is a server that speaks the common protocol, which has an address.
    Q_PROPERTY(bool hasServer READ hasServer NOTIFY changed)
    /// The models of the provider without a server, and a few words about each.
    Q_PROPERTY(QList<QString> models READ models CONSTANT)
    Q_PROPERTY(QList<QString> modelNotes READ modelNotes CONSTANT)
    /// Which of them holds, or -1 for another, whose name `otherModel` is.
    Q_PROPERTY(int model READ model WRITE setModel NOTIFY changed)
    Q_PROPERTY(QString otherModel READ otherModel NOTIFY changed)
    Q_PROPERTY(QString server READ server WRITE setServer NOTIFY changed)
    Q_PROPERTY(QString defaultServer READ defaultServer CONSTANT)
    /// The names of the addresses that can be filled in.
    Q_PROPERTY(QList<QString> presets READ presets CONSTANT)
    /// The model's name at the server.
    Q_PROPERTY(QString serverModel READ serverModel WRITE setServerModel NOTIFY changed)
    Q_PROPERTY(bool needsKey READ needsKey NOTIFY changed)
    /// A call goes to the provider only when the user asks for it on that call.
    Q_PROPERTY(bool asksEachTime READ asksEachTime WRITE setAsksEachTime NOTIFY changed)
    Q_PROPERTY(bool staysHere READ staysHere NOTIFY changed)
    /// Where a call's transcript goes.
    Q_PROPERTY(QString disclosure READ disclosure NOTIFY changed)

public:
    static SummarySettings* create(const QQmlEngine* engine, const QJSEngine* scripts);

    explicit SummarySettings(AppModel& model, QObject* parent = nullptr);

    [[nodiscard]] static QString ownSummaries();

    [[nodiscard]] bool isEnabled() const { return ai().enabled; }

    void setEnabled(bool isEnabled);
    [[nodiscard]] static QString keyPromise();
    [[nodiscard]] static QList<QString> providers();

    [[nodiscard]] int provider() const { return static_cast<int>(ai().provider); }

    void setProvider(int provider);

    [[nodiscard]] bool hasServer() const { return ai().provider == AIProviderKind::openAICompatible; }

    [[nodiscard]] static QList<QString> models();
    [[nodiscard]] static QList<QString> modelNotes();
    [[nodiscard]] int model() const;
    void setModel(int model);
    [[nodiscard]] QString otherModel() const;
    [[nodiscard]] QString server() const;
    void setServer(const QString& server);
    [[nodiscard]] static QString defaultServer();
    [[nodiscard]] static QList<QString> presets();
    /// Fills in the address of a preset.
    Q_INVOKABLE void usePreset(int preset);
    [[nodiscard]] QString serverModel() const;
    void setServerModel(const QString& model);

    [[nodiscard]] bool needsKey() const { return ai().needsKey(); }

    [[nodiscard]] bool asksEachTime() const { return ai().askEachTime; }

    void setAsksEachTime(bool asks);

    [[nodiscard]] bool staysHere() const { return ai().staysOnThisMac(); }

    [[nodiscard]] QString disclosure() const;

Q_SIGNALS:
    void changed();

private:
    [[nodiscard]] AISettings ai() const { return model_.settings.ai.value(); }

    void change(const std::function<void(AISettings&)>& edit);

    AppModel& model_;
    QPropertyNotifier watcher_;
};

} // namespace varnic
