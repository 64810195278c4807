#include "Varnic/Views/LiveView/FreshWords.h"

#include <algorithm>

namespace varnic {

namespace {

/// A speech engine revises no more than its open utterance; what lies further back is final. In words.
constexpr qsizetype lookBack = 80;

/// Marks the words of `after` that belong to a longest common subsequence with `before` as not fresh.
void markKept(const QStringList& before, const QStringList& after, qsizetype offset, std::vector<bool>& fresh) {
    const auto rows = static_cast<std::size_t>(before.size());
    const auto columns = static_cast<std::size_t>(after.size());
    std::vector<std::vector<int>> common(rows + 1, std::vector<int>(columns + 1));
    const auto same = [&](std::size_t i, std::size_t j) {
        return before[static_cast<qsizetype>(i)] == after[static_cast<qsizetype>(j)];
    };
    for (std::size_t i = rows; i-- > 0;) {
        for (std::size_t j = columns; j-- > 0;) {
            common[i][j] = same(i, j) ? common[i + 1][j + 1] + 1 : std::max(common[i + 1][j], common[i][j + 1]);
        }
    }
    for (std::size_t i = 0, j = 0; i < rows && j < columns;) {
        if (same(i, j)) {
            fresh[static_cast<std::size_t>(offset) + j] = false;
            ++i;
            ++j;
        } else if (common[i + 1][j] >= common[i][j + 1]) {
            ++i;
        } else {
            ++j;
        }
    }
}

} // namespace

QString wordKey(QStringView word) {
    QString key;
    for (const QChar character : word) {
        if (character.isLetterOrNumber() || character.isSurrogate()) {
            key += character.toLower();
        }
    }
    return key.isEmpty() ? word.toString() : key;
}

std::vector<bool> freshWords(const QStringList& before, const QStringList& after) {
    const auto [old, now] = std::ranges::mismatch(before, after);
    const qsizetype same = now - after.begin();
    std::vector<bool> fresh(static_cast<std::size_t>(after.size()), true);
    std::fill_n(fresh.begin(), same, false);
    const QStringList was = before.mid(same);
    if (was.size() <= lookBack) {
        markKept(was, after.mid(same, 2 * lookBack), same, fresh);
    }
    return fresh;
}

} // namespace varnic
