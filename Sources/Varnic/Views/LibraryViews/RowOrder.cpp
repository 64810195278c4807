#include "Varnic/Views/LibraryViews/RowOrder.h"

#include <optional>

namespace varnic::RowOrder {

std::vector<bool> longestRise(const std::vector<std::size_t>& numbers) {
    // Patience sorting: the last of each length's rise that ends lowest, and who stands before each number in its rise.
    std::vector<std::size_t> ends;
    std::vector<std::optional<std::size_t>> before(numbers.size());
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const auto place =
            std::ranges::lower_bound(ends, numbers[i], {}, [&numbers](std::size_t end) { return numbers[end]; });
        if (place != ends.begin()) {
            before[i] = *std::prev(place);
        }
        if (place == ends.end()) {
            ends.push_back(i);
        } else {
            *place = i;
        }
    }
    std::vector<bool> isIn(numbers.size());
    for (auto at = ends.empty() ? std::nullopt : std::optional(ends.back()); at; at = before[*at]) {
        isIn[*at] = true;
    }
    return isIn;
}

} // namespace varnic::RowOrder
