#include "VarnicCLI/CallFiling.h"

#include "VarnicCLI/NotePrinter.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicPlatform/Speech/SpeechModel.h"

namespace varnic::cli {

FilingOptions FilingOptions::from(const Arguments& arguments) {
    return {arguments.valueOr("your-name", ""), arguments.valueOr("their-name", ""), wishedLanguage(arguments, "en-US"),
            wishedModel(arguments, ModelChoice().text()), arguments.has("json")};
}

void apply(const FilingOptions& options, AppSettings& settings) {
    settings.yourName = options.yourName;
    settings.localeID = options.language;
    settings.speechModel = options.speechModel;
    settings.keepAudio = true;
    settings.ai = AISettings();
}

void printFiled(const Note& note, const FilingOptions& options) {
    print(note, options.yourName, Region::user());
}

ExitCode tellProblem(const Note& note) {
    if (!note.call || !note.call->problem) {
        return ExitCode::success;
    }
    Terminal::print(stderr, "varnic-cli: {}\n", problemText(note));
    return ExitCode::failure;
}

} // namespace varnic::cli
