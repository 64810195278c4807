#include "VarnicCLI/CallFiling.h"
#include "VarnicCLI/FlowRunner.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCore/Library/LibraryLock.h"
#include "VarnicCore/Library/NoteJson.h"
#include "VarnicCore/Models/Clock.h"

#include <nlohmann/json.hpp>

#include <functional>
#include <stdexcept>
#include <utility>

namespace varnic::cli {

namespace {

/// The notes of this run, told as they come.
class Report {
public:
    explicit Report(FilingOptions options) : options_(std::move(options)) {}

    void add(const Note& note) {
        notes_.push_back(encode(note));
        if (!options_.json) {
            Terminal::print("Recovered a recording of {}\n\n", Clock::length(note.call->duration));
            printFiled(note, options_);
        }
        if (tellProblem(note) == ExitCode::failure) {
            code_ = ExitCode::failure;
        }
    }

    [[nodiscard]] ExitCode finish() const {
        if (options_.json) {
            Terminal::printJson(jsonText(notes_));
        } else if (notes_.empty()) {
            Terminal::print("There is nothing to recover.\n");
        }
        return code_;
    }

private:
    FilingOptions options_;
    nlohmann::json notes_ = nlohmann::json::array();
    ExitCode code_ = ExitCode::success;
};

/// Whether another program has taken the call up or away meanwhile, to which it is left then.
bool isElsewhere(const AppModel& model, const Uuid& id) {
    const Note* note = model.note(id);
    if (note == nullptr) {
        return true;
    }
    const bool isWritten = note->call && !note->call->segments.empty();
    const bool isElsewhere = isWritten || !LibraryLock::forCall(model.audioFolder(id));
    if (isElsewhere) {
        Terminal::print(stderr, "varnic-cli: Another program {} “{}”.\n",
                        isWritten ? "has transcribed" : "is transcribing", note->displayTitle());
    }
    return isElsewhere;
}

/// Writes down what was said; an interrupt leaves the call for another try.
Note writtenDown(Application& application, const Uuid& id, const std::string& themName,
                 const std::function<QCoro::Task<>()>& flow) {
    if (!themName.empty()) {
        application.model.renameThem(id, themName);
    }
    if (!application.interruption.happened()) {
        runFlow(application, flow);
    }
    saveOrThrow(application.model, id);
    return *application.model.note(id);
}

} // namespace

ExitCode recover(const Arguments& arguments) {
    arguments.expectNoWords();
    const FilingOptions options = FilingOptions::from(arguments);
    Application application;
    AppModel& model = application.model;
    apply(options, model.settings);
    readLibrary(model);
    const AppModel::Recovered recovered = QCoro::waitFor(model.recoverRecordings());
    if (recovered.problem) {
        throw std::runtime_error(*recovered.problem);
    }
    for (int i = 0; i < recovered.soundless; ++i) {
        Terminal::print(stderr, "A recording that was cut off before it held any sound was deleted.\n");
    }
    Report report(options);
    for (const Recording& recording : recovered.calls) {
        if (!isElsewhere(model, recording.noteID)) {
            report.add(
                writtenDown(application, recording.noteID, options.themName, [&] { return model.process(recording); }));
        }
    }
    for (const Uuid& id : recovered.unwritten) {
        if (!isElsewhere(model, id)) {
            report.add(writtenDown(application, id, options.themName, [&] { return model.retranscribe(id); }));
        }
    }
    return report.finish();
}

} // namespace varnic::cli
