#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace varnic {

/// Which list the sidebar shows, in the order of the menu.
enum class LibrarySection { all, calls, notes, todos, cards };

inline constexpr std::array allLibrarySections{LibrarySection::all, LibrarySection::calls, LibrarySection::notes,
                                               LibrarySection::todos, LibrarySection::cards};

/// The form in which a section is stored and handed to views.
std::string_view rawValue(LibrarySection section);
std::optional<LibrarySection> librarySectionFrom(std::string_view rawValue);

} // namespace varnic
