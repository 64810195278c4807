#pragma once

#include <QAbstractListModel>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <ranges>
#include <span>
#include <utility>
#include <vector>

namespace varnic {

/// A list of rows that are told apart by their `id` and compared by `==`. New rows are taken over by as few removals,
/// insertions and changes as it takes, and by few moves, so that a view keeps its place and moves nothing that stays.
/// Where two rows have the same id, as in a file that was edited by hand, what changes between the ends is replaced as
/// a whole. Main thread.
///
/// What registers types for QML does not see through the template, so qmllint takes such an element as the `model` of a
/// view, not as a child.
template <typename Row>
class RowModel : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(rows_.size());
    }

    [[nodiscard]] const std::vector<Row>& rows() const { return rows_; }

protected:
    /// Takes the place of all rows.
    void setRows(const std::vector<Row>& fresh) { takeOver(fresh, std::identity(), std::equal_to<>()); }

    /// Takes the place of all rows with one for each source of the same `id`. Only what is new, or not `isShown` by its
    /// row yet, is made.
    template <typename Source, typename Make, typename Shown>
    void takeOver(const std::vector<Source>& sources, const Make& make, const Shown& isShown) {
        const Ends same = sameEnds(sources);
        removeMissing(sources, same);
        moveKept(sources, same);
        insertFresh(sources, make, same);
        for (std::size_t i = 0; i < sources.size(); ++i) {
            if (!isShown(rows_[i], sources[i])) {
                changeRow(i, make(sources[i]));
            }
        }
    }

    /// The row keeps its place and its id.
    void changeRow(std::size_t at, Row fresh) {
        if (!(rows_[at] == fresh)) {
            rows_[at] = std::move(fresh);
            const QModelIndex changed = index(static_cast<int>(at));
            Q_EMIT dataChanged(changed, changed);
        }
    }

    /// For rows that have nothing to do with those before.
    void resetRows(std::vector<Row> fresh) {
        beginResetModel();
        rows_ = std::move(fresh);
        endResetModel();
    }

private:
    using Id = decltype(Row::id);

    /// How many rows at both ends stand where they stood, so that only those between need be looked at.
    struct Ends {
        std::size_t front = 0;
        std::size_t back = 0;

        /// The rows between.
        template <typename Any>
        [[nodiscard]] std::span<const Any> middle(const std::vector<Any>& rows) const {
            return std::span(rows).subspan(front, rows.size() - front - back);
        }
    };

    template <typename Source>
    [[nodiscard]] Ends sameEnds(const std::vector<Source>& fresh) const {
        const std::size_t most = std::min(rows_.size(), fresh.size());
        Ends same;
        while (same.front < most && rows_[same.front].id == fresh[same.front].id) {
            ++same.front;
        }
        while (same.back < most - same.front &&
               rows_[rows_.size() - same.back - 1].id == fresh[fresh.size() - same.back - 1].id) {
            ++same.back;
        }
        return same;
    }

    /// Sorted.
    template <typename Any>
    static std::vector<Id> idsOf(std::span<const Any> rows) {
        std::vector<Id> ids;
        ids.reserve(rows.size());
        std::ranges::transform(rows, std::back_inserter(ids), &Any::id);
        std::ranges::sort(ids);
        return ids;
    }

    static bool hasTwins(const std::vector<Id>& sorted) { return std::ranges::adjacent_find(sorted) != sorted.end(); }

    auto at(std::size_t index) { return std::next(rows_.begin(), static_cast<std::ptrdiff_t>(index)); }

    template <typename Source>
    void removeMissing(const std::vector<Source>& fresh, Ends same) {
        std::vector<Id> kept = idsOf(same.middle(fresh));
        if (hasTwins(kept) || hasTwins(idsOf(same.middle(rows_)))) {
            kept.clear(); // nothing tells which of them is which
        }
        for (std::size_t end = rows_.size() - same.back; end > same.front;) {
            std::size_t begin = end;
            while (begin > same.front && !std::ranges::binary_search(kept, rows_[begin - 1].id)) {
                --begin;
            }
            if (begin < end) {
                beginRemoveRows({}, static_cast<int>(begin), static_cast<int>(end) - 1);
                rows_.erase(at(begin), at(end));
                endRemoveRows();
            }
            end = begin == same.front ? begin : begin - 1;
        }
    }

    /// A row that alone changed its place, as one that is edited or pinned does, makes one move.
    template <typename Source>
    void moveKept(const std::vector<Source>& fresh, Ends same) {
        const std::vector<Id> known = idsOf(same.middle(rows_));
        std::vector<Id> wanted;
        std::ranges::copy_if(same.middle(fresh) | std::views::transform(&Source::id), std::back_inserter(wanted),
                             [&](const Id& id) { return std::ranges::binary_search(known, id); });
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            const std::size_t row = same.front + i;
            if (rows_[row].id == wanted[i]) {
                continue;
            }
            if (rows_[row + 1].id == wanted[i]) {
                move(row, same.front + placeOf(rows_[row].id, wanted, std::identity()));
            } else {
                move(same.front + placeOf(wanted[i], same.middle(rows_), &Row::id), row);
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

    template <typename Source, typename Make>
    void insertFresh(const std::vector<Source>& fresh, const Make& make, Ends same) {
        const std::vector<Id> known = idsOf(same.middle(rows_));
        const std::size_t last = fresh.size() - same.back;
        for (std::size_t begin = same.front; begin < last;) {
            std::size_t end = begin;
            while (end < last && !std::ranges::binary_search(known, fresh[end].id)) {
                ++end;
            }
            if (begin < end) {
                beginInsertRows({}, static_cast<int>(begin), static_cast<int>(end) - 1);
                std::vector<Row> made;
                std::ranges::transform(std::span(fresh).subspan(begin, end - begin), std::back_inserter(made), make);
                rows_.insert(at(begin), std::move_iterator(made.begin()), std::move_iterator(made.end()));
                endInsertRows();
            }
            begin = end + 1;
        }
    }

    std::vector<Row> rows_;
};

} // namespace varnic
