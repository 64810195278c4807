#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string_view>

namespace brevin {

/// Puts a staged app in the place of the running one once that has ended. At no moment is that place without a whole
/// program, but on a file system that can’t exchange two folders in one step: there a crash between two renamings
/// leaves the old one beside its place, and puts itself back when it is started (`putBack`).
namespace Installation {

struct Job {
    std::filesystem::path staged;
    /// The running bundle.
    std::filesystem::path bundle;
    /// What is started afterwards; empty for nothing.
    std::filesystem::path relaunched;
};

/// The shell script. Its arguments are the process that it waits for, for a minute at most, the staged app, the running
/// bundle, "1" to start a program afterwards or "0", and that program.
extern const std::string_view script;

/// Starts the script, which outlives this process. A failure to start it is ignored.
void launch(const Job& job);

/// Where a swap was cut off so that this program lies beside its place and nothing in it: moves its bundle back there
/// and gives the program’s path, to be run in its stead. To be called before anything else.
std::optional<std::filesystem::path> putBack(const std::filesystem::path& program);

/// Removes what a swap that was cut off has left beside the bundle, unless it is so new that a swap may still be going
/// on. A failure is ignored.
void removeLeftovers(const std::filesystem::path& bundle, std::chrono::system_clock::time_point now);

} // namespace Installation

} // namespace brevin
