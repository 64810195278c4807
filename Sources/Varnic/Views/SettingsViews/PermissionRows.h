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
    PermissionState state = PermissionState::notAsked;

    bool operator==(const SetupRow&) const = default;
};

/// What recording takes and whether it is there, looked up each second as long as this lives: the microphone, the sound
/// of the other side and speech recognition. Main thread.
class PermissionRows : public RowModel<SetupRow>, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    Q_PROPERTY(QString explanation READ explanation CONSTANT)
    /// Shown in the settings rather than before a call: `open` goes on to the desktop's own.
    Q_PROPERTY(bool inSettings MEMBER inSettings_)
    /// The user has said yes to recording.
    Q_PROPERTY(bool isAllowed READ isAllowed NOTIFY stateChanged)
    Q_PROPERTY(bool canRecord READ canRecord NOTIFY stateChanged)
    /// Only the microphone is there.
    Q_PROPERTY(bool canRecordMySideOnly READ canRecordMySideOnly NOTIFY stateChanged)

public:
    enum Role { title = Qt::UserRole, detail, isGranted, isDenied, remedy };

    explicit PermissionRows(QObject* parent = nullptr);

    [[nodiscard]] static QString explanation();

    [[nodiscard]] bool isAllowed() const;
    [[nodiscard]] bool canRecord() const;
    [[nodiscard]] bool canRecordMySideOnly() const;

    Q_INVOKABLE void record();
    Q_INVOKABLE void recordMySideOnly();
    /// Closes the sheet that shows before a call.
    Q_INVOKABLE void close();
    /// The user says yes to recording.
    Q_INVOKABLE void allow();
    /// Opens the settings in which what is missing may be found.
    Q_INVOKABLE void open(int row);

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    void classBegin() override {}

    void componentComplete() override;

Q_SIGNALS:
    void stateChanged();

private:
    QCoro::Task<> look();
    void showModels();
    void show(const Permissions::Findings& findings);

    AppModel* model_ = nullptr;
    QTimer tick_;
    Permissions::States states_;
    bool inSettings_ = false;
    bool isLooking_ = false;
};

} // namespace varnic
