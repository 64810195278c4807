#pragma once

#include "VarnicCLI/Arguments.h"

#include <span>
#include <string_view>
#include <vector>

namespace varnic::cli {

/// Ends of a run, as every command gives them to the shell.
enum class ExitCode { success = 0, failure = 1, usage = 2 };

/// One command of the program, as data.
struct Command {
    std::string_view name;
    /// The words behind the name, for the help.
    std::string_view synopsis;
    /// One line for the list of commands.
    std::string_view summary;
    /// The text of its `--help` between the first line and the options; paragraphs end with a newline.
    std::string_view help;
    std::vector<Option> options;
    /// What its words are, one after another.
    std::vector<Choice> words;
    /// Does the work. Throws UsageError for a wrong call and std::exception with a sentence for a failure.
    ExitCode (*run)(const Arguments& arguments);
};

/// Every command, in the order of the help.
const std::vector<Command>& commands();

/// What shells call and no help tells of.
const std::vector<Command>& hiddenCommands();

ExitCode transcribe(const Arguments& arguments);
ExitCode record(const Arguments& arguments);
ExitCode recover(const Arguments& arguments);
ExitCode devices(const Arguments& arguments);
ExitCode models(const Arguments& arguments);
ExitCode list(const Arguments& arguments);
ExitCode show(const Arguments& arguments);
ExitCode undo(const Arguments& arguments);
ExitCode deleteNote(const Arguments& arguments);
ExitCode restoreNote(const Arguments& arguments);
ExitCode summarise(const Arguments& arguments);
ExitCode key(const Arguments& arguments);
ExitCode digest(const Arguments& arguments);
ExitCode search(const Arguments& arguments);
ExitCode todos(const Arguments& arguments);
ExitCode decks(const Arguments& arguments);
ExitCode exportNote(const Arguments& arguments);
ExitCode importNotes(const Arguments& arguments);
ExitCode complete(const Arguments& arguments);

} // namespace varnic::cli
