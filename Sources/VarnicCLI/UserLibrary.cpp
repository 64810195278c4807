#include "VarnicCLI/UserLibrary.h"

#include "Varnic/AppModel/AppPlaces.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>

#include <stdexcept>

namespace varnic::cli {

std::filesystem::path libraryFolder() {
    return AppPlaces::dataDirectoryFromEnvironment().first;
}

std::vector<Note> loadNotes(LibraryStore& store) {
    std::vector<Note> notes = store.loadAll(currentDate());
    if (const auto& problem = store.listingProblem()) {
        throw std::runtime_error(*problem);
    }
    for (const UnreadableFile& file : store.unreadable()) {
        Terminal::print(stderr, "varnic-cli: {} can’t be read: {}\n", file.path.filename().string(), file.reason);
    }
    return notes;
}

std::string shortId(const Note& note) {
    return note.id.text().substr(0, 8);
}

Note findNote(LibraryStore& store, std::string_view idStart) {
    return findNote(loadNotes(store), idStart);
}

Note findNote(const SharedNotes& notes, std::string_view idStart) {
    const std::string start = Unicode::upperCased(idStart);
    std::vector<SharedNote> found = notes.all();
    std::erase_if(found, [&start](const SharedNote& note) { return !note->id.text().starts_with(start); });
    if (start.empty() || found.empty()) {
        throw std::runtime_error(fmt::format("No note’s id begins with “{}”.", idStart));
    }
    if (found.size() > 1) {
        throw std::runtime_error(fmt::format("The ids of {} notes begin with “{}”.", found.size(), idStart));
    }
    return *found.front();
}

} // namespace varnic::cli
