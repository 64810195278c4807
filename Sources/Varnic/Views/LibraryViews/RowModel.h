#pragma once

#include <QAbstractListModel>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <ranges>
#include <set>
#include <utility>
#include <vector>

namespace varnic {

/// A list of rows that are told apart by their `id` and compared by `==`. New rows are taken over by as few removals,
/// insertions and changes as it takes, and by few moves, so that a view keeps its place and moves nothing that stays.
/// Main thread.
template <typename Row>
class RowModel : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(rows_.size());
    }

    [[nodiscard]] const std::vector<Row>& rows() const { return rows_; }

protected:
    /// Takes the place of all rows; ids must be different.
    void setRows(std::vector<Row> fresh) {
        removeMissing(fresh);
        moveKept(fresh);
        insertFresh(fresh);
        tellChanges(std::move(fresh));
    }

    /// For rows that have nothing to do with those before.
    void resetRows(std::vector<Row> fresh) {
        beginResetModel();
        rows_ = std::move(fresh);
        endResetModel();
    }

private:
    using Id = decltype(Row::id);

    static std::set<Id> idsOf(const std::vector<Row>& rows) {
        std::set<Id> ids;
        for (const Row& row : rows) {
            ids.insert(row.id);
        }
        return ids;
    }

    auto at(std::size_t index) { return std::next(rows_.begin(), static_cast<std::ptrdiff_t>(index)); }

    void removeMissing(const std::vector<Row>& fresh) {
        const std::set<Id> kept = idsOf(fresh);
        for (std::size_t end = rows_.size(); end > 0;) {
            std::size_t begin = end;
            while (begin > 0 && !kept.contains(rows_[begin - 1].id)) {
                --begin;
            }
            if (begin < end) {
                beginRemoveRows({}, static_cast<int>(begin), static_cast<int>(end) - 1);
                rows_.erase(at(begin), at(end));
                endRemoveRows();
            }
            end = begin == 0 ? 0 : begin - 1;
        }
    }

    /// A row that alone changed its place, as one that is edited or pinned does, makes one move.
    void moveKept(const std::vector<Row>& fresh) {
        const std::set<Id> known = idsOf(rows_);
        std::vector<Id> wanted;
        std::ranges::copy_if(fresh | std::views::transform(&Row::id), std::back_inserter(wanted),
                             [&](const Id& id) { return known.contains(id); });
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            if (rows_[i].id == wanted[i]) {
                continue;
            }
            if (rows_[i + 1].id == wanted[i]) {
                move(i, placeOf(rows_[i].id, wanted, std::identity()));
            } else {
                move(placeOf(wanted[i], rows_, &Row::id), i);
            }
        }
    }

    template <typename List, typename Projection>
    static std::size_t placeOf(const Id& id, const List& list, Projection projection) {
        return static_cast<std::size_t>(std::ranges::find(list, id, projection) - list.begin());
    }

    void move(std::size_t from, std::size_t to) {
        // Qt names the place before which the row goes while it still stands where it was.
        beginMoveRows({}, static_cast<int>(from), static_cast<int>(from), {},
                      static_cast<int>(to > from ? to + 1 : to));
        if (from < to) {
            std::rotate(at(from), at(from + 1), at(to + 1));
        } else {
            std::rotate(at(to), at(from), at(from + 1));
        }
        endMoveRows();
    }

    void insertFresh(const std::vector<Row>& fresh) {
        const std::set<Id> known = idsOf(rows_);
        for (std::size_t begin = 0; begin < fresh.size();) {
            std::size_t end = begin;
            while (end < fresh.size() && !known.contains(fresh[end].id)) {
                ++end;
            }
            if (begin < end) {
                beginInsertRows({}, static_cast<int>(begin), static_cast<int>(end) - 1);
                rows_.insert(at(begin), std::next(fresh.begin(), static_cast<std::ptrdiff_t>(begin)),
                             std::next(fresh.begin(), static_cast<std::ptrdiff_t>(end)));
                endInsertRows();
            }
            begin = end + 1;
        }
    }

    void tellChanges(std::vector<Row> fresh) {
        for (std::size_t i = 0; i < fresh.size(); ++i) {
            if (!(rows_[i] == fresh[i])) {
                rows_[i] = std::move(fresh[i]);
                const QModelIndex changed = index(static_cast<int>(i));
                Q_EMIT dataChanged(changed, changed);
            }
        }
    }

    std::vector<Row> rows_;
};

} // namespace varnic
