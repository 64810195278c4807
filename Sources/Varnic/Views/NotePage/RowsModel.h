#pragma once

#include <QAbstractListModel>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace varnic {

/// A list model over plain rows, which have an `id` and compare. New rows are taken over in place: what views show of
/// rows that stay stays too.
template <typename Row>
class RowsModel : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(rows_.size());
    }

protected:
    [[nodiscard]] const std::vector<Row>& rows() const { return rows_; }

    [[nodiscard]] const Row* row(const QModelIndex& index) const {
        return checkIndex(index, CheckIndexOption::IndexIsValid) ? &rows_[static_cast<std::size_t>(index.row())]
                                                                 : nullptr;
    }

    /// Removes and inserts between the rows that are the same at both ends, and changes those.
    void take(std::vector<Row> next) {
        const auto isSame = [](const Row& a, const Row& b) { return a.id == b.id; };
        const auto head = std::ranges::mismatch(rows_, next, isSame).in1 - rows_.begin();
        const auto most = std::min(std::ssize(rows_), std::ssize(next)) - head;
        std::ptrdiff_t tail = 0;
        while (tail < most && isSame(*(rows_.end() - 1 - tail), *(next.end() - 1 - tail))) {
            ++tail;
        }
        if (const auto last = std::ssize(rows_) - tail; last > head) {
            beginRemoveRows({}, static_cast<int>(head), static_cast<int>(last - 1));
            rows_.erase(rows_.begin() + head, rows_.begin() + last);
            endRemoveRows();
        }
        if (const auto last = std::ssize(next) - tail; last > head) {
            beginInsertRows({}, static_cast<int>(head), static_cast<int>(last - 1));
            rows_.insert(rows_.begin() + head, next.begin() + head, next.begin() + last);
            endInsertRows();
        }
        for (std::size_t i = 0; i < next.size(); ++i) {
            if (rows_[i] != next[i]) {
                change(i, [&](Row& row) { row = std::move(next[i]); });
            }
        }
    }

    template <typename Change>
    void change(std::size_t at, Change apply) {
        apply(rows_[at]);
        const QModelIndex place = index(static_cast<int>(at));
        Q_EMIT dataChanged(place, place);
    }

private:
    std::vector<Row> rows_;
};

} // namespace varnic
