#include "VarnicCLI/Command.h"
#include "VarnicCLI/Help.h"
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
#include <string_view>
#include <vector>

namespace {

using namespace varnic::cli;

const Command* commandNamed(std::string_view name) {
    for (const auto* table : {&commands(), &hiddenCommands()}) {
        if (const auto found = std::ranges::find(*table, name, &Command::name); found != table->end()) {
            return &*found;
        }
    }
    return nullptr;
}

/// The command line that tells of the one that wasn't understood.
std::string helpFor(const std::vector<std::string>& words) {
    const bool isCommand = !words.empty() && commandNamed(words.front()) != nullptr;
    return fmt::format("varnic-cli {}--help", isCommand ? words.front() + " " : "");
}

ExitCode run(const std::vector<std::string>& words) {
    if (words.empty()) {
        fmt::print(stderr, "{}", Help::overview());
        return ExitCode::usage;
    }
    if (words.front() == "--help" || words.front() == "-h" || words.front() == "help") {
        fmt::print("{}", Help::overview());
        return ExitCode::success;
    }
    if (words.front() == "--manual") { // for packages, which install it
        fmt::print("{}", Help::manual());
        return ExitCode::success;
    }
    if (words.front() == "--version") {
        fmt::print("varnic-cli {}\n", VARNIC_VERSION);
        return ExitCode::success;
    }
    const Command* command = commandNamed(words.front());
    if (command == nullptr) {
        throw UsageError(fmt::format("{} isn’t a command", words.front()));
    }
    const Arguments arguments = Arguments::parse(std::span(words).subspan(1), command->options);
    if (arguments.has("help")) {
        fmt::print("{}", Help::of(*command));
        return ExitCode::success;
    }
    return command->run(arguments);
}

} // namespace

int main(int argc, char** argv) {
    if (const std::optional<int> code = varnic::ModelCheck::enable(argc, argv)) {
        return *code;
    }
    const std::vector<std::string> words(argv + 1, argv + argc);
    try {
        const ExitCode code = run(words);
        if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
            fmt::print(stderr, "varnic-cli: The output couldn’t be written.\n");
            return static_cast<int>(ExitCode::failure);
        }
        return static_cast<int>(code);
    } catch (const UsageError& error) {
        Terminal::print(stderr, "varnic-cli: {}; see {}\n", error.what(), helpFor(words));
        return static_cast<int>(ExitCode::usage);
    } catch (const varnic::CaptureError& error) {
        Terminal::print(stderr, "varnic-cli: {}\n", varnic::Wording::shown(error.what()));
        return static_cast<int>(ExitCode::failure);
    } catch (const std::exception& error) {
        Terminal::print(stderr, "varnic-cli: {}\n", error.what());
        return static_cast<int>(ExitCode::failure);
    }
}
