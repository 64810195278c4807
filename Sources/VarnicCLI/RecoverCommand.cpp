#include "VarnicCLI/CallFiling.h"
#include "VarnicCLI/Interruption.h"
#include "VarnicCLI/UserLibrary.h"
#include "VarnicCore/Library/NoteJson.h"
#include "VarnicCore/Library/Recovery.h"
#include "VarnicCore/Models/Clock.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <vector>

namespace varnic::cli {

namespace {

/// The note of a recording; the call's audio stays whatever happens. Throws LibraryError, and the recording is then
/// found again.
Note recovered(LibraryStore& store, DeadRecording& dead, const FilingOptions& options,
               const Interruption& interruption) {
    Note note = makeNote(dead.recording, options, interruption.token());
    if (interruption.happened() && note.call->segments.empty()) {
        note.call->problem = "Varnic was quit before this call was transcribed — choose Transcribe Again.";
    }
    store.save(note);
    dead.mark.remove();
    return note;
}

/// What holds no sound goes to the deleted notes, which keep it for a while.
void discard(const LibraryStore& store, DeadRecording& dead) {
    store.remove(dead.recording.noteID);
    fmt::print(stderr, "A recording that was cut off before it held any sound was deleted.\n");
}

} // namespace

ExitCode recover(const Arguments& arguments) {
    arguments.expectNoWords();
    const FilingOptions options = FilingOptions::from(arguments);
    const Interruption interruption;
    LibraryStore store(libraryFolder());
    nlohmann::json notes = nlohmann::json::array();
    ExitCode code = ExitCode::success;
    for (DeadRecording& dead : Recovery::find(store)) {
        if (!dead.hasSound()) {
            discard(store, dead);
            continue;
        }
        const Note note = recovered(store, dead, options, interruption);
        notes.push_back(encode(note));
        if (!options.json) {
            fmt::print("Recovered a recording of {}\n\n", Clock::length(dead.recording.duration));
            printFiled(note, options);
        }
        if (tellProblem(note) == ExitCode::failure) {
            code = ExitCode::failure;
        }
        if (interruption.happened()) {
            break; // the others are found again
        }
    }
    if (options.json) {
        fmt::print("{}\n", jsonText(notes));
    } else if (notes.empty()) {
        fmt::print("There is nothing to recover.\n");
    }
    return code;
}

} // namespace varnic::cli
