#pragma once

#include "VarnicCore/Pipeline/ProcessingStage.h"

#include <fmt/format.h>

#include <cstdio>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include <termios.h>

/// The one way to the user's terminal. Titles, file names and what servers say may hold any characters, and a terminal
/// takes some for commands: whatever is printed here leaves only the program's own styles as such.
namespace varnic::cli::Terminal {

/// The text in bold, or in a fainter tone, once `print` has it.
std::string bold(std::string_view text);
std::string faint(std::string_view text);

/// The text with a visible sign in the place of each control character but tabs and newlines, and without styles.
std::string plain(std::string_view text);

/// Writes the text with its styles where the stream is a terminal and NO_COLOR (no-color.org) is not set, and else
/// without them.
void write(std::FILE* stream, std::string_view text);

template <typename... Values>
void print(std::FILE* stream, fmt::format_string<Values...> format, Values&&... values) {
    write(stream, fmt::format(format, std::forward<Values>(values)...));
}

template <typename... Values>
void print(fmt::format_string<Values...> format, Values&&... values) {
    write(stdout, fmt::format(format, std::forward<Values>(values)...));
}

/// A line of JSON on standard output: byte for byte into a file or a pipe, and for a terminal with escapes.
void printJson(std::string_view json);

/// The bytes of a text file on standard output: as they are into a file or a pipe, and `plain` for a terminal.
void printFile(std::string_view bytes);

/// Keeps the terminal of standard input from showing what is typed, as long as it lives. An interrupt or a polite kill
/// ends the waiting for it instead of the program, so that the terminal never stays silent. One at a time.
class SilentInput {
public:
    SilentInput();
    SilentInput(const SilentInput&) = delete;
    SilentInput& operator=(const SilentInput&) = delete;
    ~SilentInput();

    /// Waits until there is something to read; false once interrupted, whenever that was.
    [[nodiscard]] static bool wait();
    [[nodiscard]] static bool wasInterrupted();

private:
    termios before_{};
};

/// A line on standard error that is drawn over itself and removed at the end; silent where that is no terminal. Any
/// thread.
class StatusLine {
public:
    StatusLine();
    StatusLine(const StatusLine&) = delete;
    StatusLine& operator=(const StatusLine&) = delete;

    ~StatusLine() { clear(); }

    void show(const std::string& text);

    /// Makes room for other output.
    void clear();

private:
    std::mutex lock_;
    bool isTerminal_;
    std::string drawn_;
};

/// How far a call is, as a bar and a text.
std::string bar(ProcessingStage stage);

} // namespace varnic::cli::Terminal
