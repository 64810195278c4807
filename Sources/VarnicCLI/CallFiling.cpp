#include "VarnicCLI/CallFiling.h"

#include "VarnicCLI/NotePrinter.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCore/Summariser/ExtractiveSummariser.h"
#include "VarnicCore/Text/Wording.h"
#include "VarnicPlatform/Speech/SpeechModel.h"
#include "VarnicPlatform/Speech/SpeechTranscriber.h"

#include <fmt/format.h>

#include <memory>

namespace varnic::cli {

FilingOptions FilingOptions::from(const Arguments& arguments) {
    return {arguments.valueOr("your-name", ""), arguments.valueOr("their-name", ""),
            arguments.valueOr("language", "en-US"), arguments.has("json")};
}

void applyForThisRun(const FilingOptions& options, AppSettings& settings) {
    settings.keepForThisRun();
    settings.yourName = options.yourName;
    settings.localeID = options.language;
    settings.keepAudio = true;
    settings.ai = AISettings();
}

Note makeNote(const Recording& recording, const FilingOptions& options, const std::stop_token& stop) {
    const DigestContext context{.callDate = recording.startedAt,
                                .yourName = options.yourName,
                                .themName = options.themName,
                                .source = recording.source};
    const CallProcessor processor(
        std::make_shared<SpeechTranscriber>(options.language, SpeechModels::dataDirectories()),
        std::make_shared<ExtractiveSummariser>());
    Terminal::StatusLine line;
    Note note = processor.process(
        recording, context, [&line](ProcessingStage stage) { line.show(Terminal::bar(stage)); }, stop);
    note.call->language = options.language;
    return note;
}

void printFiled(const Note& note, const FilingOptions& options) {
    print(note, options.yourName, Region::user());
}

ExitCode tellProblem(const Note& note) {
    if (!note.call || !note.call->problem) {
        return ExitCode::success;
    }
    fmt::print(stderr, "varnic-cli: {}\n", Wording::shown(*note.call->problem));
    return ExitCode::failure;
}

} // namespace varnic::cli
