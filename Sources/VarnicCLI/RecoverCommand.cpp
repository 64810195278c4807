#include "VarnicCLI/CallFiling.h"
#include "VarnicCLI/FlowRunner.h"
#include "VarnicCore/Library/NoteJson.h"
#include "VarnicCore/Models/Clock.h"

#include <QCoreApplication>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace varnic::cli {

namespace {

/// Writes down what was said; an interrupt leaves the call for another try.
Note writtenDown(AppModel& model, const Interruption& interruption, const Recording& recording,
                 const FilingOptions& options) {
    model.renameThem(recording.noteID, options.themName);
    if (!interruption.happened()) {
        runFlow(model, interruption, [&] { return model.process(recording); });
    }
    saveOrThrow(model, recording.noteID);
    return *model.note(recording.noteID);
}

} // namespace

ExitCode recover(const Arguments& arguments) {
    arguments.expectNoWords();
    const FilingOptions options = FilingOptions::from(arguments);
    const Interruption interruption; // Ahead of all that starts threads.
    int argumentCount = 0;
    const QCoreApplication application(argumentCount, nullptr);
    AppModel model(AppPlaces::fromEnvironment());
    applyForThisRun(options, model.settings);
    const AppModel::Recovered recovered = QCoro::waitFor(model.recoverRecordings());
    for (int i = 0; i < recovered.soundless; ++i) {
        fmt::print(stderr, "A recording that was cut off before it held any sound was deleted.\n");
    }
    nlohmann::json notes = nlohmann::json::array();
    ExitCode code = ExitCode::success;
    for (const Recording& recording : recovered.calls) {
        const Note note = writtenDown(model, interruption, recording, options);
        notes.push_back(encode(note));
        if (!options.json) {
            fmt::print("Recovered a recording of {}\n\n", Clock::length(recording.duration));
            printFiled(note, options);
        }
        if (tellProblem(note) == ExitCode::failure) {
            code = ExitCode::failure;
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
