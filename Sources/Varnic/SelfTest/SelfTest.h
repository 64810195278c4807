#pragma once

#include <QCoro/QCoroTask>

#include <optional>
#include <string>

namespace varnic {

class AppDelegate;
class AppModel;

/// The program proves its promises: VARNIC_SELFTEST has it go through a user's journey on the scratch library of
/// VARNIC_DATA_DIR, with an invented call, and print a line for each promise. "persist" looks at what such a run left
/// behind; any other value is the journey. The sound of the call is made in VARNIC_FIXTURE_DIR, or beside the library.
namespace SelfTest {

/// Whether the environment asks for it.
bool isAskedFor();

/// Why it can't begin, a line to print; nothing where it can. Without a folder of its own it would run on the user's
/// library, which therefore isn't even to be opened.
std::optional<std::string> refusal();

/// Runs it and ends the program as its user would. The last line tells whether all is well. Main thread; model and
/// shell are at the beginning of their life and stay until the end of the process.
QCoro::Task<> run(AppModel& model, AppDelegate& shell);

} // namespace SelfTest
} // namespace varnic
