#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/Views/Rows/RowModel.h"

#include <QQmlParserStatus>
#include <QString>
#include <QtQmlIntegration>

#include <vector>

namespace varnic {

/// A call that was recorded lately.
struct RecentCall {
    Uuid id;
    QString title;
    /// When it was, seen from now.
    QString date;

    bool operator==(const RecentCall&) const = default;

    /// The latest calls of the library, the newest first, without one that is being recorded.
    static std::vector<RecentCall> of(const AppModel& model);

    /// Selects the call in the window and shows that.
    static void open(AppModel& model, const Uuid& id);
};

/// The latest calls, for the tray. Main thread.
class RecentCalls : public RowModel<RecentCall>, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT

public:
    enum Role { title = Qt::UserRole, date };

    using RowModel<RecentCall>::RowModel;

    Q_INVOKABLE void open(int row);
    /// Tells the dates anew.
    Q_INVOKABLE void refresh();

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    void classBegin() override {}

    void componentComplete() override;

private:
    AppModel* model_ = nullptr;
};

} // namespace varnic
