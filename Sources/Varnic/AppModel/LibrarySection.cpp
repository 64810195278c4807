#include "Varnic/AppModel/LibrarySection.h"

#include <algorithm>
#include <cstddef>

namespace varnic {

std::string_view rawValue(LibrarySection section) {
    constexpr std::array<std::string_view, allLibrarySections.size()> names{"all", "calls", "notes", "todos", "cards"};
    return names.at(static_cast<std::size_t>(section));
}

std::optional<LibrarySection> librarySectionFrom(std::string_view raw) {
    const auto* const found =
        std::ranges::find(allLibrarySections, raw, [](LibrarySection section) { return rawValue(section); });
    return found == allLibrarySections.end() ? std::nullopt : std::optional(*found);
}

} // namespace varnic
