#pragma once

#include "VarnicCLI/Command.h"

#include <string>

/// What is told of the commands, all of it from their table.
namespace varnic::cli::Help {

/// The list of commands.
std::string overview();

/// The `--help` of one command.
std::string of(const Command& command);

/// How an option is written: "-o, --output FILE".
std::string label(const Option& option);

/// The page of the manual, in the form of man(7).
std::string manual();

} // namespace varnic::cli::Help
