#include "VarnicCLI/Command.h"
#include "VarnicCLI/NotePrinter.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCLI/UserLibrary.h"
#include "VarnicCore/Library/NoteJson.h"
#include "VarnicCore/Library/ResultJson.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace varnic::cli {

namespace {

/// A due date as "2026-03-20", or the words that could not be resolved, or nothing.
std::string dueText(const OpenTodo& todo, const Region& region) {
    return todo.dueDate ? region.format(*todo.dueDate, "yyyy-MM-dd") : todo.block.due.value_or("");
}

} // namespace

ExitCode todos(const Arguments& arguments) {
    arguments.expectNoWords();
    LibraryStore store(libraryFolder());
    const Region region = Region::user();
    const std::vector<OpenTodo> open = Todos::open(loadNotes(store), region);
    if (arguments.has("json")) {
        Terminal::printJson(jsonText(ResultJson::todos(open)));
        return ExitCode::success;
    }
    for (const OpenTodo& todo : open) {
        const std::string owner = todo.block.owner ? fmt::format(" ({})", label(*todo.block.owner)) : "";
        Terminal::print("{:<12} [ ] {}{}  {}\n", dueText(todo, region), todo.block.text, Terminal::faint(owner),
                        Terminal::faint(todo.noteTitle));
    }
    if (open.empty()) {
        Terminal::print(stderr, "There are no open to-dos.\n");
    }
    return ExitCode::success;
}

ExitCode decks(const Arguments& arguments) {
    arguments.expectNoWords();
    LibraryStore store(libraryFolder());
    const auto all = Flashcards::decks(loadNotes(store), currentDate(), Region::user());
    if (arguments.has("json")) {
        Terminal::printJson(jsonText(ResultJson::decks(all)));
        return ExitCode::success;
    }
    for (const Flashcards::Deck& deck : all) {
        Terminal::print("{:>4} due of {:>4}  {}\n", deck.due, deck.total, deck.title);
    }
    if (all.empty()) {
        Terminal::print(stderr, "No note has flashcards.\n");
    }
    return ExitCode::success;
}

} // namespace varnic::cli
