#pragma once

#include "VarnicCLI/Command.h"
#include "VarnicCore/Pipeline/CallProcessor.h"

#include <csignal>
#include <string>

/// From a recording to a filed note, as every command does it that ends in one.
namespace varnic::cli {

/// What the options say of a call's note.
struct FilingOptions {
    std::string yourName;
    std::string themName;
    std::string language;
    bool json = false;

    /// From --your-name, --their-name, --language and --json.
    static FilingOptions from(const Arguments& arguments);
};

/// Turns, as long as it lives, an interrupt or a polite kill into a request to stop, so that no half-filed call is left
/// behind.
class Interruption {
public:
    Interruption() {
        std::signal(SIGINT, note);
        std::signal(SIGTERM, note);
    }

    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    ~Interruption() {
        std::signal(SIGINT, SIG_DFL);
        std::signal(SIGTERM, SIG_DFL);
    }

    [[nodiscard]] static bool happened() { return raised != 0; }

private:
    static void note(int /*signal*/) { raised = 1; }

    inline static volatile std::sig_atomic_t raised = 0;
};

/// Transcribes the recording and makes its note, with a progress bar; an interruption ends it early, as a problem of
/// the call. Stores nothing.
Note makeNote(const Recording& recording, const FilingOptions& options);

/// Prints the note for people, in words.
void printFiled(const Note& note, const FilingOptions& options);

/// Says on standard error what went wrong with the call, if anything; `failure` then.
ExitCode tellProblem(const Note& note);

} // namespace varnic::cli
