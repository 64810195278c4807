#include "VarnicCLI/Command.h"
#include "VarnicCLI/NotePrinter.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCLI/UserLibrary.h"
#include "VarnicCore/Library/NoteJson.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace varnic::cli {

ExitCode list(const Arguments& arguments) {
    arguments.expectNoWords();
    LibraryStore store(libraryFolder());
    const std::vector<Note> notes = loadNotes(store);
    if (arguments.has("json")) {
        auto rows = nlohmann::json::array();
        for (const Note& note : notes) {
            rows.push_back({{"id", note.id.text()},
                            {"title", note.displayTitle()},
                            {"created", formatDate(note.created)},
                            {"isCall", note.isCall()}});
        }
        fmt::print("{}\n", jsonText(rows));
        return ExitCode::success;
    }
    const Region region = Region::user();
    for (const Note& note : notes) {
        fmt::print("{}  {}  {}{}\n", Terminal::faint(shortId(note)), region.format(note.created, "yyyy-MM-dd HH:mm"),
                   note.displayTitle(), note.isCall() ? Terminal::faint("  (call)") : "");
    }
    if (notes.empty() && store.unreadable().empty()) {
        fmt::print(stderr, "The library is empty. varnic-cli transcribe --help tells how to file a call.\n");
    }
    return ExitCode::success;
}

ExitCode show(const Arguments& arguments) {
    LibraryStore store(libraryFolder());
    const Note note = findNote(store, arguments.onlyWord("note’s id"));
    if (arguments.has("json")) {
        fmt::print("{}\n", LibraryStore::encoded(note));
    } else {
        print(note, "", Region::user());
    }
    return ExitCode::success;
}

} // namespace varnic::cli
