#pragma once

#include <QAbstractListModel>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace varnic {

/// The rows of a list model, which have an `id` and compare. New rows are taken over in place: what views show of rows
/// that stay stays too. A part of its model and not a base class, because the registration of QML types does not see
/// through templates. `Model` is a QAbstractListModel and makes this a friend.
template <typename Model, typename Row>
class Rows {
public:
    explicit Rows(Model& model) : model_(model) {}

    [[nodiscard]] const std::vector<Row>& all() const { return rows_; }

    [[nodiscard]] int count(const QModelIndex& parent) const {
        return parent.isValid() ? 0 : static_cast<int>(rows_.size());
    }

    /// The row, or null where there is none.
    [[nodiscard]] const Row* at(const QModelIndex& index) const {
        return model_.checkIndex(index, QAbstractItemModel::CheckIndexOption::IndexIsValid)
                   ? &rows_[static_cast<std::size_t>(index.row())]
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
            model_.beginRemoveRows({}, static_cast<int>(head), static_cast<int>(last - 1));
            rows_.erase(rows_.begin() + head, rows_.begin() + last);
            model_.endRemoveRows();
        }
        if (const auto last = std::ssize(next) - tail; last > head) {
            model_.beginInsertRows({}, static_cast<int>(head), static_cast<int>(last - 1));
            rows_.insert(rows_.begin() + head, next.begin() + head, next.begin() + last);
            model_.endInsertRows();
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
        const QModelIndex place = model_.index(static_cast<int>(at));
        Q_EMIT model_.dataChanged(place, place);
    }

private:
    Model& model_;
    std::vector<Row> rows_;
};

} // namespace varnic
