#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/Views/Rows/RowModel.h"

#include <QQmlParserStatus>
#include <QString>
#include <QtQmlIntegration>

#include <optional>
#include <vector>

namespace varnic {

/// A to-do, or the note that the to-dos below it stand in.
struct TodoRow {
    /// The block's id, or the note's.
    Uuid id;
    Uuid note;
    bool isHeader = false;
    QString text;
    /// Whose it is; empty where nobody's.
    QString ownerName;
    bool isYours = false;
    /// The due date in words; may be empty.
    QString due;
    /// By which the list is ordered: of a to-do, and of its note.
    std::optional<Date> dueDate;
    Date created;

    bool operator==(const TodoRow&) const = default;
};

/// The open to-dos of all notes, nearest first, under the titles of their notes. Main thread.
class TodoListModel : public RowModel<TodoRow>, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role { isHeader = Qt::UserRole, noteId, blockId, text, ownerName, isYours, due };

    using RowModel<TodoRow>::RowModel;

    /// For use without QML.
    void setModel(AppModel& model);

    [[nodiscard]] int count() const { return rowCount(); }

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    void classBegin() override {}

    void componentComplete() override;

Q_SIGNALS:
    void countChanged();

private:
    void refresh();
    void take(const ChangedNotes& changed);
    [[nodiscard]] bool changeInPlace(const Uuid& id);

    AppModel* model_ = nullptr;
};

} // namespace varnic
