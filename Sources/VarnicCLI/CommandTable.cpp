#include "VarnicCLI/Command.h"

namespace varnic::cli {

namespace {

Option json(std::string help) {
    return {.name = "json", .value = {}, .help = std::move(help)};
}

Option yourName(std::string help = "your name, for the follow-up email") {
    return {.name = "your-name", .value = "NAME", .help = std::move(help)};
}

Option theirName() {
    return {.name = "their-name", .value = "NAME", .help = "the other party’s name"};
}

Option language(const std::string& otherwise) {
    return {.name = "language",
            .value = "LOCALE",
            .help =
                "the language spoken" + otherwise + "; auto has it found out; a speech model for it must be installed",
            .choice = Choice::language};
}

Option speechModel() {
    return {.name = "model",
            .value = "MODEL",
            .help = "what writes the finished call down: bestWords, fastest, or the id of a speech model, as `models` "
                    "lists them",
            .choice = Choice::speechModel};
}

Option recording(std::string name, std::string help) {
    return {.name = std::move(name), .value = "FILE", .help = std::move(help), .choice = Choice::file};
}

constexpr const char* asStored = "print the note as the library stores it";

} // namespace

const std::vector<Command>& commands() {
    static const std::vector<Command> table{
        {"transcribe",
         "[--you FILE] [--them FILE] | --note ID [options]",
         "turn the two sides of a recorded call into a note",
         R"(Copies the recordings into the library, writes them down on this computer and files the note. With --note, writes
down anew what was recorded of a call that is in the library: what was noted by hand stays.
)",
         {recording("you", "the microphone’s recording"),
          recording("them", "the recording of what the computer played"),
          {.name = "note",
           .value = "ID",
           .help = "transcribe this call again; ID is a note’s id or the beginning of one, as `list` prints it",
           .choice = Choice::note},
          yourName(),
          theirName(),
          {.name = "source", .value = "NAME", .help = "what carried the call (“Call” unless given)"},
          language(" (en-US unless given, the call’s own with --note)"),
          speechModel(),
          json("print the note as the library stores it, and nothing else")},
         {},
         transcribe},
        {"record",
         "[options]",
         "record a call and turn it into a note",
         R"(Records the microphone and what other programs play until Ctrl-C, then writes down what was said and files the
note. Ctrl-C again while it writes ends that: the note then holds the recording alone.
)",
         {{.name = "for", .value = "SECONDS", .help = "stop by itself after so long"},
          {.name = "microphone",
           .value = "DEVICE",
           .help = "record this microphone, by its name or its label, instead of the one of the settings",
           .choice = Choice::microphone},
          {.name = "output",
           .value = "DEVICE",
           .help = "record what is played on this output instead of what the settings say",
           .choice = Choice::output},
          {.name = "mic-only", .value = {}, .help = "record the microphone alone"},
          {.name = "no-live",
           .value = {},
           .help = "write nothing down while the call runs; the transcript is then made from the recording"},
          yourName(),
          language(""),
          speechModel(),
          json(asStored)},
         {},
         record},
        {"recover",
         "[options]",
         "make notes of recordings that were cut off",
         R"(Finds recordings whose program was killed, or that a power cut ended, writes down what there is of them and files
the notes. Calls that are in the library without their words, since their program ended before those came, are written
down too. What another program records or writes down right now is left alone.
)",
         {yourName(), theirName(), language(" (en-US unless given)"), speechModel(),
          json("print an array of the notes as the library stores them")},
         {},
         recover},
        {"devices",
         "[--json]",
         "tell what would be recorded and what is missing",
         "",
         {json("print an object with microphone, output, playing, missing")},
         {},
         devices},
        {"models",
         "[options]",
         "list the speech models that are installed",
         R"(Tells for each where it was found. Broken ones are named on standard error.
)",
         {{.name = "check", .value = {}, .help = "try each out, too"},
          json("print an object with models, each with id, name, engine, locales, bytes and folder, and faults")},
         {},
         models},
        {"list",
         "[--json]",
         "list the notes of the library, newest first",
         "",
         {json("print an array of objects with id, title, created, isCall")},
         {},
         list},
        {"show",
         "ID [--json]",
         "show one note",
         "ID is a note’s id or the beginning of one, as `list` prints it.\n",
         {json(asStored)},
         {Choice::note},
         show},
        {"undo",
         "ID [--json]",
         "bring back the transcript and summary that new ones replaced",
         R"(ID is a note’s id or the beginning of one, as `list` prints it. What was written into the note since stays, and a
second undo brings the new ones back.
)",
         {json(asStored)},
         {Choice::note},
         undo},
        {"delete",
         "ID",
         "move a note and its recording to the deleted ones",
         R"(ID is a note’s id or the beginning of one, as `list` prints it. Deleted notes are kept for 30 days; `restore` brings
them back.
)",
         {},
         {Choice::note},
         deleteNote},
        {"restore",
         "[ID] [--json]",
         "list the deleted notes, or bring one back",
         R"(ID is a deleted note’s id or the beginning of one. Without it, the deleted notes are listed, last deleted first.
)",
         {json("print an array of objects with id, title, created, isCall, or the note as the library stores it")},
         {Choice::deletedNote},
         restoreNote},
        {"digest",
         "FILE [options]",
         "make a digest of a transcript",
         R"(FILE holds a transcript as JSON: an array of segments with id, speaker ("you" or "them"), start and end in
seconds, and text. "-" reads standard input. Nothing is stored.
)",
         {yourName(), theirName(), json("print the digest as the library stores it")},
         {Choice::file},
         digest},
        {"summarise",
         "ID [options]",
         "have an AI provider or a local model summarise a call",
         R"(Sends the transcript with the call’s date, source and names, and nothing else of the note, to the provider and puts
its summary into the note. ID is a note’s id or the beginning of one, as `list` prints it. If it fails, the note stays
as it was.
)",
         {{.name = "provider",
           .value = "NAME",
           .help = "anthropic, or openAICompatible for any server of that kind; given by --server alone, too",
           .choice = Choice::provider},
          {.name = "model", .value = "NAME", .help = "the model (for anthropic claude-haiku-5-5 unless given)"},
          {.name = "server",
           .value = "URL",
           .help = "the server’s base URL (http://localhost:11434/v1 unless given); for anthropic a gateway to it"},
          yourName("your name, for the follow-up email"),
          json(asStored)},
         {Choice::note},
         summarise},
        {"key",
         "set|remove PROVIDER",
         "keep a provider’s API key in the key ring, or remove it",
         "PROVIDER is anthropic or openAICompatible. The key is read from standard input, without showing it.\n",
         {},
         {Choice::keyAction, Choice::provider},
         key},
        {"search",
         "QUERY... [--json]",
         "search titles, notes, transcripts and emails",
         R"(A place needs to hold one of the words; those with more of them come first. Case and accents don’t count.
)",
         {json("print an array of objects with noteID and hits")},
         {},
         search},
        {"todos",
         "[--json]",
         "list the open to-dos of all notes, nearest due date first",
         "",
         {json("print an array of objects with noteID, noteTitle, block, dueDate")},
         {},
         todos},
        {"decks",
         "[--json]",
         "list the notes with flashcards and how many are due",
         "",
         {json("print an array of objects with noteID, title, total, due")},
         {},
         decks},
        {"export",
         "ID [options]",
         "write a note as Markdown, PDF, RTF or Word file",
         "ID is a note’s id or the beginning of one, as `list` prints it.\n",
         {{.name = "format",
           .value = "FORMAT",
           .help = "markdown, pdf, rtf or docx; unless given, the one that FILE’s ending names, or else markdown",
           .choice = Choice::exportFormat},
          {.name = "output",
           .value = "FILE",
           .help = "write to FILE, or into it under the note’s title if it is a folder",
           .choice = Choice::file,
           .letter = 'o'},
          yourName("the name that stands for you"),
          {.name = "no-transcript", .value = {}, .help = "leave the transcript out"},
          {.name = "no-email", .value = {}, .help = "leave the follow-up email out"},
          json("print an object with fileName and text (markdown only)")},
         {Choice::note},
         exportNote},
        {"import",
         "FILE.md | FOLDER [--json]",
         "make notes of Markdown files",
         R"(Each file becomes a note, of a folder every .md file in it and below. A file without a title is named after
itself, and title and date of a front matter become the note’s. “**Q:** question” with “**A:** answer” in the next line
becomes a flashcard. Lists in lists become one list, and code loses its indentation; how often is told at the end. The
files stay as they are. Ctrl-C ends it after the file that it is at.
)",
         {json("print an array of objects with id, title, file and, where something was simplified, an object with "
               "nestedItems and codeLines")},
         {Choice::file},
         importNotes},
    };
    return table;
}

const std::vector<Command>& hiddenCommands() {
    static const std::vector<Command> table{
        {"complete",
         "-- [WORD...] WORD",
         "print what can stand for the last of these words of a command line",
         R"(A line for each: the text, a tab, and what it is. The line “:files” stands for the names of files.
)",
         {},
         {},
         complete},
    };
    return table;
}

} // namespace varnic::cli
