#include "VarnicCLI/Command.h"
#include "VarnicCLI/FlowRunner.h"
#include "VarnicCLI/NoteList.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCLI/UserLibrary.h"
#include "VarnicCore/Library/LibraryStore.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

namespace varnic::cli {

ExitCode deleteNote(const Arguments& arguments) {
    const std::string& word = arguments.onlyWord("note’s id");
    Application application;
    AppModel& model = application.model;
    readLibrary(model);
    const Note note = findNote(model.notes(), word);
    model.remove(note.id);
    model.flushSaves();
    const std::vector<Note> deleted = LibraryStore(libraryFolder()).deleted(currentDate());
    if (std::ranges::find(deleted, note.id, &Note::id) == deleted.end()) {
        throw std::runtime_error(fmt::format("“{}” couldn’t be deleted.", note.displayTitle()));
    }
    Terminal::print("Deleted “{}”. varnic-cli restore {} brings it back.\n", note.displayTitle(), shortId(note));
    return ExitCode::success;
}

ExitCode restoreNote(const Arguments& arguments) {
    std::vector<Note> deleted = LibraryStore(libraryFolder()).deleted(currentDate());
    if (arguments.words().empty()) {
        printList(deleted, arguments.has("json"));
        if (deleted.empty() && !arguments.has("json")) {
            Terminal::print(stderr, "No deleted note is left.\n");
        }
        return ExitCode::success;
    }
    const Note note = findNote(std::move(deleted), arguments.onlyWord("note’s id"));
    Application application;
    AppModel& model = application.model;
    readLibrary(model);
    if (model.note(note.id) != nullptr) {
        throw std::runtime_error(fmt::format("“{}” is in the library already.", model.note(note.id)->displayTitle()));
    }
    QCoro::waitFor(model.restore(note));
    saveOrThrow(model, note.id);
    if (arguments.has("json")) {
        Terminal::printJson(LibraryStore::encoded(*model.note(note.id)));
    } else {
        printList({*model.note(note.id)}, false);
    }
    return ExitCode::success;
}

} // namespace varnic::cli
