#include "VarnicCLI/CallFiling.h"
#include "VarnicCLI/FlowRunner.h"
#include "VarnicCore/Library/NoteJson.h"
#include "VarnicCore/Models/Clock.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <stdexcept>

namespace varnic::cli {

namespace {

/// Writes down what was said; an interrupt leaves the call for another try.
Note writtenDown(Application& application, const Recording& recording, const FilingOptions& options) {
    AppModel& model = application.model;
    model.renameThem(recording.noteID, options.themName);
    if (!application.interruption.happened()) {
        runFlow(application, [&] { return model.process(recording); });
    }
    saveOrThrow(model, recording.noteID);
    return *model.note(recording.noteID);
}

} // namespace

ExitCode recover(const Arguments& arguments) {
    arguments.expectNoWords();
    const FilingOptions options = FilingOptions::from(arguments);
    Application application;
    apply(options, application.model.settings);
    const AppModel::Recovered recovered = QCoro::waitFor(application.model.recoverRecordings());
    if (recovered.problem) {
        throw std::runtime_error(*recovered.problem);
    }
    for (int i = 0; i < recovered.soundless; ++i) {
        fmt::print(stderr, "A recording that was cut off before it held any sound was deleted.\n");
    }
    nlohmann::json notes = nlohmann::json::array();
    ExitCode code = ExitCode::success;
    for (const Recording& recording : recovered.calls) {
        const Note note = writtenDown(application, recording, options);
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
