#include "Varnic/Views/BlockEditor/TableCells.h"

#include <algorithm>

namespace varnic {

namespace {

/// Of entries (rows or columns) that are more or fewer than they were, where those came or went: the last place that
/// leaves the most cells what they were. `same` counts those that an old entry and a new one have in common.
template <typename Same>
int placeOfChange(int were, int are, const Same& same) {
    const int fewer = std::min(were, are);
    int place = 0;
    int kept = 0;
    int most = 0;
    for (int i = 0; i < fewer; ++i) {
        kept += same(i, i) - same(i + were - fewer, i + are - fewer);
        if (kept >= most) {
            most = kept;
            place = i + 1;
        }
    }
    return place;
}

} // namespace

void TableCells::setTable(const TableWords& fresh) {
    if (fresh == table()) {
        return;
    }
    fitColumns(fresh);
    fitRows(fresh);
    for (int i = 0; i < rowCount(); ++i) {
        if (cells_[i] != fresh.cells()[i]) {
            cells_[i] = fresh.cells()[i];
            Q_EMIT dataChanged(index(i), index(i));
        }
    }
    Q_EMIT tableChanged();
}

void TableCells::fitColumns(const TableWords& fresh) {
    const int fewer = std::min(rows(), fresh.rows());
    const int place = placeOfChange(columns_, fresh.columns(), [&](int was, int is) {
        const auto isSame = [&](int wasRow, int isRow) {
            return cells_[wasRow * columns_ + was] == fresh.cells()[isRow * fresh.columns() + is] ? 1 : 0;
        };
        int count = 0;
        for (int row = 0; row < fewer; ++row) { // from the top and from the end, for rows may have come or gone too
            count += isSame(row, row) + isSame(row + rows() - fewer, row + fresh.rows() - fewer);
        }
        return count;
    });
    for (int row = rows() - 1; row >= 0; --row) { // from the end, before which all stays in its place
        makeRoom(row * columns_ + place, fresh.columns() - columns_);
    }
    columns_ = fresh.columns();
}

void TableCells::fitRows(const TableWords& fresh) {
    const int place = placeOfChange(rows(), fresh.rows(), [&](int was, int is) {
        int count = 0;
        for (int column = 0; column < columns_; ++column) {
            count += cells_[was * columns_ + column] == fresh.cells()[is * columns_ + column] ? 1 : 0;
        }
        return count;
    });
    makeRoom(place * columns_, (fresh.rows() - rows()) * columns_);
}

/// For so many cells; below 0, takes as many away.
void TableCells::makeRoom(int place, int cells) {
    if (cells > 0) {
        beginInsertRows({}, place, place + cells - 1);
        cells_.insert(place, cells, QString());
        endInsertRows();
    } else if (cells < 0) {
        beginRemoveRows({}, place, place - cells - 1);
        cells_.remove(place, -cells);
        endRemoveRows();
    }
}

QVariant TableCells::data(const QModelIndex& index, int role) const {
    return checkIndex(index, CheckIndexOption::IndexIsValid) && role == words ? cells_[index.row()] : QVariant();
}

QHash<int, QByteArray> TableCells::roleNames() const {
    return {{words, "words"}};
}

} // namespace varnic
