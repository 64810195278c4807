#include "VarnicCLI/Command.h"
#include "VarnicCLI/NoteList.h"
#include "VarnicCLI/NotePrinter.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCLI/UserLibrary.h"
#include "VarnicCore/Library/NoteJson.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace varnic::cli {

void printList(const std::vector<Note>& notes, bool json) {
    if (json) {
        auto rows = nlohmann::json::array();
        for (const Note& note : notes) {
            rows.push_back({{"id", note.id.text()},
                            {"title", note.displayTitle()},
                            {"created", formatDate(note.created)},
                            {"isCall", note.isCall()}});
        }
        Terminal::printJson(jsonText(rows));
        return;
    }
    const Region region = Region::user();
    for (const Note& note : notes) {
        Terminal::print("{}  {}  {}{}\n", Terminal::faint(shortId(note)),
                        region.format(note.created, "yyyy-MM-dd HH:mm"), note.displayTitle(),
                        note.isCall() ? Terminal::faint("  (call)") : "");
    }
}

ExitCode list(const Arguments& arguments) {
    arguments.expectNoWords();
    LibraryStore store(libraryFolder());
    const std::vector<Note> notes = loadNotes(store);
    printList(notes, arguments.has("json"));
    if (notes.empty() && store.unreadable().empty() && !arguments.has("json")) {
        Terminal::print(
            stderr, "The library is empty. `varnic-cli record` records a call, `varnic-cli transcribe` files one that "
                    "was recorded elsewhere.\n");
    }
    return ExitCode::success;
}

ExitCode show(const Arguments& arguments) {
    LibraryStore store(libraryFolder());
    const Note note = findNote(store, arguments.onlyWord("note’s id"));
    if (arguments.has("json")) {
        Terminal::printJson(LibraryStore::encoded(note));
    } else {
        print(note, "", Region::user());
    }
    return ExitCode::success;
}

} // namespace varnic::cli
