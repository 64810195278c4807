#pragma once

#include <Qt>

#include <algorithm>
#include <optional>

/// How keys move the selection of a list. Pure.
namespace varnic::ListKeys {

/// The row to select after a key (Qt::Key); nothing for a key that moves nothing, and in an empty list. From no row,
/// -1, any of them leads to an end.
inline std::optional<int> rowAfter(int key, int row, int count, int rowsOnPage) {
    const int last = count - 1;
    const auto moved = [&](int by) { return row < 0 ? 0 : std::clamp(row + by, 0, last); };
    if (count == 0) {
        return std::nullopt;
    }
    switch (key) {
    case Qt::Key_Up:
        return moved(-1);
    case Qt::Key_Down:
        return moved(1);
    case Qt::Key_PageUp:
        return moved(-std::max(rowsOnPage, 1));
    case Qt::Key_PageDown:
        return moved(std::max(rowsOnPage, 1));
    case Qt::Key_Home:
        return 0;
    case Qt::Key_End:
        return last;
    default:
        return std::nullopt;
    }
}

} // namespace varnic::ListKeys
