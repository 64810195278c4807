#include "VarnicCLI/Command.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCore/Audio/CaptureError.h"
#include "VarnicCore/Models/Wording.h"
#include "VarnicPlatform/Speech/ModelCheck.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace varnic::cli;

void printHelp(std::FILE* stream) {
    fmt::print(stream, "usage: varnic-cli COMMAND [options]\n       varnic-cli --help | --version\n\n"
                       "Keeps calls and notes in a library on this computer.\n\n");
    for (const Command& command : commands()) {
        fmt::print(stream, "  {:<12} {}\n", command.name, command.summary);
    }
    fmt::print(stream, "\nvarnic-cli COMMAND --help tells more. The library is in $VARNIC_DATA_DIR or, if that isn’t "
                       "set, in\nVarnic/Library under your data folder.\n");
}

void printHelp(const Command& command) {
    fmt::print("usage: varnic-cli {} {}\n\n{}{}", command.name, command.synopsis, command.summary, "\n");
    fmt::print("{}", command.help);
}

ExitCode run(const std::vector<std::string>& words) {
    if (words.empty()) {
        printHelp(stderr);
        return ExitCode::usage;
    }
    if (words.front() == "--help" || words.front() == "-h" || words.front() == "help") {
        printHelp(stdout);
        return ExitCode::success;
    }
    if (words.front() == "--version") {
        fmt::print("varnic-cli {}\n", VARNIC_VERSION);
        return ExitCode::success;
    }
    const auto command = std::ranges::find(commands(), words.front(), &Command::name);
    if (command == commands().end()) {
        throw UsageError(fmt::format("{} isn’t a command", words.front()));
    }
    const Arguments arguments = Arguments::parse(std::span(words).subspan(1), command->options);
    if (arguments.has("help")) {
        printHelp(*command);
        return ExitCode::success;
    }
    return command->run(arguments);
}

} // namespace

int main(int argc, char** argv) {
    if (const std::optional<int> code = varnic::ModelCheck::enable(argc, argv)) {
        return *code;
    }
    try {
        const ExitCode code = run({argv + 1, argv + argc});
        if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
            fmt::print(stderr, "varnic-cli: The output couldn’t be written.\n");
            return static_cast<int>(ExitCode::failure);
        }
        return static_cast<int>(code);
    } catch (const UsageError& error) {
        Terminal::print(stderr, "varnic-cli: {}; see varnic-cli --help\n", error.what());
        return static_cast<int>(ExitCode::usage);
    } catch (const varnic::CaptureError& error) {
        Terminal::print(stderr, "varnic-cli: {}\n", varnic::Wording::shown(error.what()));
        return static_cast<int>(ExitCode::failure);
    } catch (const std::exception& error) {
        Terminal::print(stderr, "varnic-cli: {}\n", error.what());
        return static_cast<int>(ExitCode::failure);
    }
}
