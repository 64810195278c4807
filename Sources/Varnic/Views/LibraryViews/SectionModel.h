#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/Views/Rows/RowModel.h"

#include <QQmlParserStatus>
#include <QString>
#include <QTimer>
#include <QtQmlIntegration>

#include <vector>

namespace varnic {

/// A section of the sidebar.
struct SectionRow {
    LibrarySection id = LibrarySection::all;
    QString title;
    QString symbol;
    /// A number; empty at 0.
    QString badge;

    bool operator==(const SectionRow&) const = default;
};

/// The sections of the sidebar. Main thread.
class SectionModel : public RowModel<SectionRow>, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    /// -1 for a section that has no row.
    Q_PROPERTY(int currentRow READ currentRow NOTIFY currentRowChanged)

public:
    enum Role { title = Qt::UserRole, section, symbolName, badge };

    explicit SectionModel(QObject* parent = nullptr) : RowModel<SectionRow>(parent) {}

    /// For use without QML.
    void setModel(AppModel& model);

    [[nodiscard]] int currentRow() const;

    Q_INVOKABLE void select(int row);
    /// Whether the key (Qt::Key) is one that moves the selection, which it then has done.
    Q_INVOKABLE bool moveByKey(int key);

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    void classBegin() override {}

    void componentComplete() override;

Q_SIGNALS:
    void currentRowChanged();

private:
    void refresh();

    AppModel* model_ = nullptr;
    QTimer badgeTimer_;
    QTimer dueTimer_;
    QPropertyNotifier sectionWatcher_;
};

} // namespace varnic
