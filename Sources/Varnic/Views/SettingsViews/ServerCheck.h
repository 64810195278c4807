#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "VarnicCore/AISummariser/ServerModels.h"

#include <QObject>
#include <QQmlEngine>
#include <QtQmlIntegration>

#include <optional>

namespace varnic {

/// Whether the AI server of the settings answers, and with which models. Main thread.
class ServerCheck : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// What is wrong with the address as it is; else empty.
    Q_PROPERTY(QString addressProblem READ addressProblem NOTIFY changed)
    Q_PROPERTY(bool isAsking READ isAsking NOTIFY changed)
    /// What came of asking; empty before.
    Q_PROPERTY(QString sentence READ sentence NOTIFY changed)
    /// It answered as it should.
    Q_PROPERTY(bool works READ works NOTIFY changed)
    /// It asks for a key, which one on this computer may do too.
    Q_PROPERTY(bool wantsKey READ wantsKey NOTIFY changed)
    Q_PROPERTY(QList<QString> models READ models NOTIFY changed)
    /// Which of them is chosen, or -1.
    Q_PROPERTY(int model READ model WRITE setModel NOTIFY changed)

public:
    static ServerCheck* create(const QQmlEngine* engine, const QJSEngine* scripts);

    explicit ServerCheck(AppModel& model, QObject* parent = nullptr);

    [[nodiscard]] QString addressProblem() const;

    [[nodiscard]] bool isAsking() const { return isAsking_; }

    [[nodiscard]] QString sentence() const;

    [[nodiscard]] bool works() const { return answer_ && answer_->kind == ServerAnswer::Kind::models; }

    [[nodiscard]] bool wantsKey() const { return answer_ && answer_->kind == ServerAnswer::Kind::refused; }

    [[nodiscard]] QList<QString> models() const;
    [[nodiscard]] int model() const;
    void setModel(int model);

    Q_INVOKABLE void ask() { askServer(); }

Q_SIGNALS:
    void changed();

private:
    QCoro::Task<> askServer();
    void follow();

    AppModel& model_;
    bool isAsking_ = false;
    std::optional<ServerAnswer> answer_;
    /// The address that was asked.
    std::string asked_;
    QPropertyNotifier watcher_;
};

} // namespace varnic
