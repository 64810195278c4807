#pragma once

#include "VarnicCore/Library/LibraryStore.h"
#include "VarnicCore/Library/SharedNotes.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// The user's library as the commands see it.
namespace varnic::cli {

/// $VARNIC_DATA_DIR, else Varnic/Library in the user's data folder (XDG base directories). Throws std::runtime_error
/// where no home is known.
std::filesystem::path libraryFolder();

/// All notes, newest first; a line on standard error for each file that cannot be read. Throws std::runtime_error with
/// the user's sentence where the library cannot be looked into.
std::vector<Note> loadNotes(LibraryStore& store);

/// The beginning of the note's id, enough to name it in any real library.
std::string shortId(const Note& note);

/// The note whose id begins with the text (in either case). Throws std::runtime_error where none or several do.
Note findNote(LibraryStore& store, std::string_view idStart);
Note findNote(const SharedNotes& notes, std::string_view idStart);

} // namespace varnic::cli
