#include "Varnic/AppModel/CallImport.h"
#include "VarnicCLI/CallFiling.h"
#include "VarnicCLI/FlowRunner.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCLI/UserLibrary.h"
#include "VarnicCore/Audio/AudioReader.h"
#include "VarnicCore/Audio/TranscriberError.h"
#include "VarnicCore/Library/LibraryLock.h"
#include "VarnicCore/Library/LibraryStore.h"
#include "VarnicCore/Models/CallProblem.h"

#include <fmt/format.h>

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>

namespace varnic::cli {

namespace {

namespace fs = std::filesystem;

/// The recording of a side, if one is given. Throws with a sentence that names it where it holds no audio.
std::optional<fs::path> recordingOf(Speaker side, const Arguments& arguments) {
    const auto file = arguments.value(std::string(rawValue(side)));
    std::error_code unknown;
    if (file && !fs::exists(*file, unknown)) {
        throw std::runtime_error(fmt::format("There is no “{}”.", *file));
    }
    if (file && !(audioLength(*file).seconds() > 0)) {
        throw std::runtime_error(
            fmt::format("“{}” has no audio Varnic can read.", fs::path(*file).filename().string()));
    }
    return file;
}

/// Writes down the files as a call of its own.
Uuid fileCall(Application& application, const CallImport& call) {
    std::optional<Uuid> id;
    runFlow(application, [&]() -> QCoro::Task<> { id = co_await application.model.importCall(call); });
    if (!id) {
        throw std::runtime_error(application.interruption.happened() ? "Stopped. Nothing was filed."
                                                                     : toastText(application.model));
    }
    return *id;
}

/// Writes down anew a call of the library.
Uuid transcribeAgain(Application& application, const std::string& idStart, const Arguments& arguments) {
    AppModel& model = application.model;
    readLibrary(model);
    const Note before = findNote(model.notes(), idStart);
    if (!before.call) {
        throw std::runtime_error("This note is no call.");
    }
    if (!model.callActions(before, model.callFiles(before)).transcribe) {
        throw std::runtime_error(TranscriberError::missingFile().what());
    }
    if (!LibraryLock::forCall(model.audioFolder(before.id))) {
        throw std::runtime_error("Another program is transcribing this call.");
    }
    model.settings.localeID = wishedLanguage(arguments, before.call->language);
    if (const auto name = arguments.value("their-name")) {
        model.renameThem(before.id, *name);
    }
    runFlow(application, [&] { return model.retranscribe(before.id); });
    saveOrThrow(model, before.id);
    // Of a side that the transcript has lines of, the recording may be gone: then it stays, and only this tells.
    if (const std::string missing = TranscriberError::missingFile().what(); toastText(model) == missing) {
        throw std::runtime_error(missing);
    }
    if (application.interruption.happened() && model.note(before.id)->call->segments == before.call->segments) {
        throw std::runtime_error("Stopped. The note is as it was.");
    }
    return before.id;
}

CallImport callOf(const Arguments& arguments, const FilingOptions& options) {
    CallImport call{
        .files = {.you = recordingOf(Speaker::you, arguments), .them = recordingOf(Speaker::them, arguments)},
        .source = arguments.valueOr("source", "Call"),
        .themName = options.themName,
        .isFiledAtOnce = false};
    if (call.files.speakers().empty()) {
        throw UsageError("give a recording with --you, --them or both, or a call with --note");
    }
    return call;
}

} // namespace

ExitCode transcribe(const Arguments& arguments) {
    arguments.expectNoWords();
    const FilingOptions options = FilingOptions::from(arguments);
    const auto again = arguments.value("note");
    if (again && (arguments.has("you") || arguments.has("them") || arguments.has("source"))) {
        throw UsageError("--note goes without --you, --them and --source");
    }
    const std::optional<CallImport> call = again ? std::nullopt : std::optional(callOf(arguments, options));
    Application application;
    AppModel& model = application.model;
    apply(options, model.settings);
    const Uuid id = call ? fileCall(application, *call) : transcribeAgain(application, *again, arguments);
    saveOrThrow(model, id);
    const Note& note = *model.note(id);
    if (options.json) {
        Terminal::printJson(LibraryStore::encoded(note));
    } else {
        printFiled(note, options);
    }
    const ExitCode code = tellProblem(note);
    // What the recording lost is told each time; a new transcript of the rest is no failure for it.
    return again && !CallProblem::withoutLoss(note.call->problem) ? ExitCode::success : code;
}

} // namespace varnic::cli
