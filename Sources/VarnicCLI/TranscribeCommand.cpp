#include "VarnicCLI/CallFiling.h"
#include "VarnicCLI/FlowRunner.h"
#include "VarnicCore/Audio/AudioReader.h"
#include "VarnicCore/Library/LibraryStore.h"

#include <fmt/format.h>

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>

namespace varnic::cli {

namespace {

namespace fs = std::filesystem;

/// The recording of a side, if one is given. Throws with a sentence that names it where it holds no sound.
std::optional<fs::path> recordingOf(Speaker side, const Arguments& arguments) {
    const auto file = arguments.value(std::string(rawValue(side)));
    if (file && !(audioLength(*file).seconds() > 0)) {
        throw std::runtime_error(
            fmt::format("“{}” has no audio Varnic can read.", fs::path(*file).filename().string()));
    }
    return file;
}

} // namespace

ExitCode transcribe(const Arguments& arguments) {
    arguments.expectNoWords();
    const FilingOptions options = FilingOptions::from(arguments);
    const CallImport call{
        .files = {.you = recordingOf(Speaker::you, arguments), .them = recordingOf(Speaker::them, arguments)},
        .source = arguments.valueOr("source", "Call"),
        .themName = options.themName,
        .language = options.language,
        .isFiledAtOnce = false};
    if (call.files.speakers().empty()) {
        throw UsageError("give a recording with --you, --them or both");
    }
    Application application;
    AppModel& model = application.model;
    apply(options, model.settings);
    std::optional<Uuid> id;
    runFlow(application, [&]() -> QCoro::Task<> { id = co_await model.importCall(call); });
    if (!id) {
        throw std::runtime_error(application.interruption.happened() ? "Stopped. Nothing was filed."
                                                                     : toastText(model));
    }
    saveOrThrow(model, *id);
    const Note& note = *model.note(id);
    if (options.json) {
        fmt::print("{}\n", LibraryStore::encoded(note));
    } else {
        printFiled(note, options);
    }
    return tellProblem(note);
}

} // namespace varnic::cli
