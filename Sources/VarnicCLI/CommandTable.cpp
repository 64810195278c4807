#include "VarnicCLI/Command.h"

namespace varnic::cli {

const std::vector<Command>& commands() {
    static const std::vector<Command> table{
        {"transcribe",
         "[--you FILE] [--them FILE] | --note ID [options]",
         "turn the two sides of a recorded call into a note",
         R"(Copies the recordings into the library, writes them down on this computer and files the note. With --note, writes
down anew what was recorded of a call that is in the library: what was noted by hand stays.

  --you FILE         the microphone's recording
  --them FILE        the recording of what the computer played
  --note ID          transcribe this call again; ID is a note's id or the beginning of one, as `list` prints it
  --your-name NAME   your name, for the follow-up email
  --their-name NAME  the other party's name
  --source NAME      what carried the call ("Call" unless given)
  --language LOCALE  the language spoken (en-US unless given, the call's own with --note); a speech model for it must
                     be installed
  --model MODEL      bestWords (unless given), fastest, or the id of a speech model, as `models` lists them
  --json             print the note as the library stores it, and nothing else
)",
         {{"you", true},
          {"them", true},
          {"note", true},
          {"your-name", true},
          {"their-name", true},
          {"source", true},
          {"language", true},
          {"model", true},
          {"json", false}},
         transcribe},
        {"record",
         "[options]",
         "record a call and turn it into a note",
         R"(Records the microphone and what other programs play until Ctrl-C, then writes down what was said and files the
note. Ctrl-C again while it writes ends that: the note then holds the recording alone.

  --for SECONDS      stop by itself after so long
  --mic-only         record the microphone alone
  --no-live          write nothing down while the call runs; the transcript is then made from the recording
  --your-name NAME   your name, for the follow-up email
  --language LOCALE  the language spoken; a speech model for it must be installed
  --model MODEL      bestWords, fastest, or the id of a speech model that writes the finished call down; live lines come
                     from the fastest
  --json             print the note as the library stores it
)",
         {{"for", true},
          {"mic-only", false},
          {"no-live", false},
          {"your-name", true},
          {"language", true},
          {"model", true},
          {"json", false}},
         record},
        {"recover",
         "[options]",
         "make notes of recordings that were cut off",
         R"(Finds recordings whose program was killed, or that a power cut ended, writes down what there is of them and files
the notes. Calls that are in the library without their words, since their program ended before those came, are written
down too. What another program records or writes down right now is left alone.

  --your-name NAME   your name, for the follow-up email
  --their-name NAME  the other party's name
  --language LOCALE  the language spoken (en-US unless given); a speech model for it must be installed
  --model MODEL      bestWords (unless given), fastest, or the id of a speech model, as `models` lists them
  --json             print an array of the notes as the library stores them
)",
         {{"your-name", true}, {"their-name", true}, {"language", true}, {"model", true}, {"json", false}},
         recover},
        {"devices",
         "[--json]",
         "tell what would be recorded and what is missing",
         R"(
  --json  print an object with microphone, output, playing, missing
)",
         {{"json", false}},
         devices},
        {"models",
         "[options]",
         "list the speech models that are installed",
         R"(Tells for each where it was found. Broken ones are named on standard error.

  --check  try each out, too
  --json   print an object with models, each with id, name, engine, locales, bytes and folder, and faults
)",
         {{"check", false}, {"json", false}},
         models},
        {"list",
         "[--json]",
         "list the notes of the library, newest first",
         R"(
  --json  print an array of objects with id, title, created, isCall
)",
         {{"json", false}},
         list},
        {"show",
         "ID [--json]",
         "show one note",
         R"(ID is a note's id or the beginning of one, as `list` prints it.

  --json  print the note as the library stores it
)",
         {{"json", false}},
         show},
        {"undo",
         "ID [--json]",
         "bring back the transcript and summary that new ones replaced",
         R"(ID is a note's id or the beginning of one, as `list` prints it. What was written into the note since stays, and a
second undo brings the new ones back.

  --json  print the note as the library stores it
)",
         {{"json", false}},
         undo},
        {"delete",
         "ID",
         "move a note and its recording to the deleted ones",
         R"(ID is a note's id or the beginning of one, as `list` prints it. Deleted notes are kept for 30 days; `restore` brings
them back.
)",
         {},
         deleteNote},
        {"restore",
         "[ID] [--json]",
         "list the deleted notes, or bring one back",
         R"(ID is a deleted note's id or the beginning of one. Without it, the deleted notes are listed, last deleted first.

  --json  print an array of objects with id, title, created, isCall, or the note as the library stores it
)",
         {{"json", false}},
         restoreNote},
        {"digest",
         "FILE [options]",
         "make a digest of a transcript",
         R"(FILE holds a transcript as JSON: an array of segments with id, speaker ("you" or "them"), start and end in
seconds, and text. "-" reads standard input. Nothing is stored.

  --your-name NAME   your name, for the follow-up email
  --their-name NAME  the other party's name
  --json             print the digest as the library stores it
)",
         {{"your-name", true}, {"their-name", true}, {"json", false}},
         digest},
        {"summarise",
         "ID [options]",
         "have an AI provider or a local model summarise a call",
         R"(Sends the transcript with the call's date, source and names, and nothing else of the note, to the provider and puts
its summary into the note. ID is a note's id or the beginning of one, as `list` prints it. If it fails, the note stays
as it was.

  --provider NAME   anthropic, or openAICompatible for any server of that kind; given by --server alone, too
  --model NAME      the model (for anthropic claude-haiku-5-5 unless given)
  --server URL      the server's base URL (http://localhost:11434/v1 unless given); for anthropic a gateway to it
  --your-name NAME  your name, for the follow-up email
  --json            print the note as the library stores it
)",
         {{"provider", true}, {"model", true}, {"server", true}, {"your-name", true}, {"json", false}},
         summarise},
        {"key",
         "set|remove PROVIDER",
         "keep a provider's API key in the key ring, or remove it",
         R"(PROVIDER is anthropic or openAICompatible. The key is read from standard input, without showing it.
)",
         {},
         key},
        {"search",
         "QUERY... [--json]",
         "search titles, notes, transcripts and emails",
         R"(A place needs to hold one of the words; those with more of them come first. Case and accents don't count.

  --json  print an array of objects with noteID and hits
)",
         {{"json", false}},
         search},
        {"todos",
         "[--json]",
         "list the open to-dos of all notes, nearest due date first",
         R"(
  --json  print an array of objects with noteID, noteTitle, block, dueDate
)",
         {{"json", false}},
         todos},
        {"decks",
         "[--json]",
         "list the notes with flashcards and how many are due",
         R"(
  --json  print an array of objects with noteID, title, total, due
)",
         {{"json", false}},
         decks},
        {"export",
         "ID [options]",
         "write a note as Markdown, PDF, RTF or Word file",
         R"(ID is a note's id or the beginning of one, as `list` prints it.

  --format FORMAT    markdown (unless given), pdf, rtf or docx
  -o, --output FILE  write to FILE, or into it under the note's title if it is a folder
  --your-name NAME   the name that stands for you
  --no-transcript    leave the transcript out
  --no-email         leave the follow-up email out
  --json             print an object with fileName and text (markdown only)
)",
         {{"format", true},
          {"output", true, 'o'},
          {"your-name", true},
          {"no-transcript", false},
          {"no-email", false},
          {"json", false}},
         exportNote},
        {"import",
         "FILE.md | FOLDER [--json]",
         "make notes of Markdown files",
         R"(Each file becomes a note, of a folder every .md file in it and below. A file without a title is named after
itself, and title and date of a front matter become the note's. Lists in lists become one list, and code loses its
indentation; how often is told at the end. The files stay as they are. Ctrl-C ends it after the file that it is at.

  --json  print an array of objects with id, title, file and, where something was simplified, an object with nestedItems
          and codeLines
)",
         {{"json", false}},
         importNotes},
    };
    return table;
}

} // namespace varnic::cli
