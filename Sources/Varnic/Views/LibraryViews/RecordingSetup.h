#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/Views/Rows/RowModel.h"
#include "VarnicPlatform/Capture/Permissions.h"

#include <QQmlParserStatus>
#include <QString>
#include <QTimer>
#include <QtQmlIntegration>

namespace varnic {

/// One thing that recording takes.
struct SetupRow {
    int id = 0;
    QString title;
    /// What it is for or, where it is missing, what to do.
    QString detail;
    bool isReady = false;
    /// The settings to open where it is missing, see Permissions::openSettings.
    QString pane;

    bool operator==(const SetupRow&) const = default;
};

/// What recording takes and whether it is there, looked up each second as long as this lives. Main thread.
class RecordingSetup : public RowModel<SetupRow>, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    Q_PROPERTY(QString explanation READ explanation CONSTANT)
    Q_PROPERTY(bool canRecord READ canRecord NOTIFY stateChanged)
    /// Only the microphone is there.
    Q_PROPERTY(bool canRecordMySideOnly READ canRecordMySideOnly NOTIFY stateChanged)

public:
    enum Role { title = Qt::UserRole, detail, isReady, pane };

    explicit RecordingSetup(QObject* parent = nullptr);

    [[nodiscard]] static QString explanation();

    [[nodiscard]] bool canRecord() const;
    [[nodiscard]] bool canRecordMySideOnly() const;

    Q_INVOKABLE void record();
    Q_INVOKABLE void recordMySideOnly();

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    void classBegin() override {}

    void componentComplete() override;

Q_SIGNALS:
    void stateChanged();

private:
    QCoro::Task<> look();
    void show(const Permissions::Findings& findings);

    AppModel* model_ = nullptr;
    QTimer tick_;
    Permissions::States states_;
    bool isLooking_ = false;
};

} // namespace varnic
