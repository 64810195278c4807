#pragma once

#include "Varnic/Shell/Request.h"

#include <QStringList>

#include <optional>
#include <string>

namespace varnic {

/// What the command line asks for.
struct CommandLine {
    Request request;
    /// To be printed instead of running: the help, the version or what is wrong with the arguments.
    std::optional<std::string> answer;
    /// The exit code where there is an answer.
    int exitCode = 0;

    /// `words` begin with the program's name. Relative paths count from the current folder, and the activation token is
    /// that of the environment. Needs no application.
    static CommandLine parse(const QStringList& words);
};

} // namespace varnic
