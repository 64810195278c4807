#pragma once

#include <QAbstractListModel>
#include <QStringList>
#include <QtQmlIntegration>

#include <utility>

namespace varnic {

/// The words of a table as they are shown: row by row, all rows as long as the longest.
class TableWords {
    Q_GADGET
    QML_VALUE_TYPE(tableWords)
    Q_PROPERTY(int columns READ columns CONSTANT)
    Q_PROPERTY(int rows READ rows CONSTANT)

public:
    TableWords() = default;

    /// As many cells as whole rows of so many columns hold.
    TableWords(QStringList cells, int columns) : cells_(std::move(cells)), columns_(columns) {}

    [[nodiscard]] const QStringList& cells() const { return cells_; }

    [[nodiscard]] int columns() const { return columns_; }

    [[nodiscard]] int rows() const { return columns_ > 0 ? static_cast<int>(cells_.size()) / columns_ : 0; }

    bool operator==(const TableWords&) const = default;

private:
    QStringList cells_;
    int columns_ = 0;
};

/// The cells of a table for a view, row by row. When rows or columns come or go, each other cell stays the item that it
/// was, with its words: what is typed there goes on, and the caret stays. Main thread.
class TableCells : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(varnic::TableWords table READ table WRITE setTable NOTIFY tableChanged)
    /// Told when all cells of the new width are there.
    Q_PROPERTY(int columns READ columns NOTIFY tableChanged)

public:
    enum Role { words = Qt::UserRole };

    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] TableWords table() const { return {cells_, columns_}; }

    void setTable(const TableWords& fresh);

    [[nodiscard]] int columns() const { return columns_; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(cells_.size());
    }

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void tableChanged();

private:
    [[nodiscard]] int rows() const { return table().rows(); }

    void fitColumns(const TableWords& fresh);
    void fitRows(const TableWords& fresh);
    void makeRoom(int place, int cells);

    QStringList cells_;
    int columns_ = 0;
};

} // namespace varnic
