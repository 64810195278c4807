#include "Varnic/Views/Rows/RowModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gmock/gmock.h>

#include <algorithm>
#include <random>

namespace varnic {
namespace {

using testing::ElementsAreArray;

struct Row {
    int id = 0;
    int text = 0;

    bool operator==(const Row&) const = default;
};

class Rows : public RowModel<Row> {
public:
    using RowModel<Row>::setRows;

    explicit Rows(const std::vector<int>& ids) { set(ids); }

    void set(const std::vector<int>& ids) {
        std::vector<Row> rows;
        for (const int id : ids) {
            rows.push_back({id, 0});
        }
        setRows(rows);
    }

    [[nodiscard]] std::vector<int> ids() const {
        std::vector<int> result;
        for (const Row& row : rows()) {
            result.push_back(row.id);
        }
        return result;
    }

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
        return index.isValid() && role == Qt::DisplayRole ? QVariant(rows()[static_cast<std::size_t>(index.row())].text)
                                                          : QVariant();
    }
};

/// How often a model told of each kind of change.
struct Told {
    int removed = 0;
    int moved = 0;
    int inserted = 0;
    int changed = 0;

    bool operator==(const Told&) const = default;
};

struct Case {
    const char* name;
    std::vector<int> before;
    std::vector<int> after;
    Told told;
};

class RowModelCases : public testing::TestWithParam<Case> {};

TEST_P(RowModelCases, takes_over_by_as_little_as_it_takes) {
    const Case& now = GetParam();
    Rows rows(now.before);
    const QAbstractItemModelTester tester(&rows, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const QSignalSpy removed(&rows, &QAbstractItemModel::rowsRemoved);
    const QSignalSpy moved(&rows, &QAbstractItemModel::rowsMoved);
    const QSignalSpy inserted(&rows, &QAbstractItemModel::rowsInserted);
    const QSignalSpy changed(&rows, &QAbstractItemModel::dataChanged);
    rows.set(now.after);
    EXPECT_THAT(rows.ids(), ElementsAreArray(now.after));
    const auto count = [](const QSignalSpy& spy) { return static_cast<int>(spy.count()); };
    EXPECT_EQ((Told{count(removed), count(moved), count(inserted), count(changed)}), now.told);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, RowModelCases,
    testing::Values(Case{"nothing_new", {1, 2, 3}, {1, 2, 3}, {}}, //
                    Case{"new_note", {1, 2, 3}, {4, 1, 2, 3}, {.inserted = 1}},
                    Case{"pinned", {1, 2, 3, 4}, {4, 1, 2, 3}, {.moved = 1}},
                    Case{"unpinned", {1, 2, 3, 4}, {2, 3, 1, 4}, {.moved = 1}},
                    Case{"edited", {1, 2, 3, 4}, {1, 3, 2, 4}, {.moved = 1}},
                    Case{"deleted", {1, 2, 3, 4}, {1, 3, 4}, {.removed = 1}},
                    Case{"neighbours_go_at_once", {1, 2, 3, 4}, {1, 4}, {.removed = 1}},
                    Case{"all_at_once", {1, 2, 3, 4}, {5, 4, 2, 6}, {.removed = 2, .moved = 1, .inserted = 2}},
                    Case{"loaded", {}, {1, 2, 3}, {.inserted = 1}}, //
                    Case{"emptied", {1, 2, 3}, {}, {.removed = 1}}),
    [](const auto& one) { return one.param.name; });

TEST(RowModel, only_changed_rows_change) {
    Rows rows({1, 2, 3});
    const QSignalSpy changed(&rows, &QAbstractItemModel::dataChanged);
    rows.setRows({{1, 0}, {2, 7}, {3, 0}});
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.front().front().toModelIndex().row(), 1);
}

/// A view that follows the signals alone must end with the same rows, also where ids stand twice.
TEST(RowModel, any_list_becomes_any_other) {
    std::mt19937 random(7);
    for (const int ids : {24, 8}) {
        Rows rows({});
        const QAbstractItemModelTester tester(&rows, QAbstractItemModelTester::FailureReportingMode::Fatal);
        std::vector<int> all(24);
        std::ranges::generate(all, [&ids, next = 0]() mutable { return next++ % ids; });
        for (int round = 0; round < 300; ++round) {
            std::ranges::shuffle(all, random);
            const std::vector<int> some(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(random() % all.size()));
            rows.set(some);
            ASSERT_THAT(rows.ids(), ElementsAreArray(some)) << ids << " ids, round " << round;
        }
    }
}

} // namespace
} // namespace varnic
