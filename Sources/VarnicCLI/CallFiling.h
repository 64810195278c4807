#pragma once

#include "Varnic/AppModel/AppSettings.h"
#include "VarnicCLI/Command.h"
#include "VarnicCore/Models/Note.h"

#include <string>

/// From a recording to a filed note, as every command does it that ends in one.
namespace varnic::cli {

/// What the options say of a call's note.
struct FilingOptions {
    std::string yourName;
    std::string themName;
    std::string language;
    std::string speechModel;
    bool json = false;

    /// From --your-name, --their-name, --language, --model and --json. Throws as `wishedLanguage` and `wishedModel` do.
    static FilingOptions from(const Arguments& arguments);
};

/// The application with these names and this language, and with its own summaries.
void apply(const FilingOptions& options, AppSettings& settings);

/// The setting for the language: what --language wishes, else `otherwise`. Throws std::runtime_error where it is to be
/// found out and no model that is installed can.
std::string wishedLanguage(const Arguments& arguments, const std::string& otherwise);

/// The setting for the speech model: what --model wishes, else `otherwise`. Throws std::runtime_error for a model that
/// is not installed or can't be used.
std::string wishedModel(const Arguments& arguments, const std::string& otherwise);

/// Prints the note for people, in words.
void printFiled(const Note& note, const FilingOptions& options);

/// Says on standard error what went wrong with the call, if anything; `failure` then.
ExitCode tellProblem(const Note& note);

} // namespace varnic::cli
