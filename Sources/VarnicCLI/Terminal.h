#pragma once

#include "VarnicCore/Pipeline/ProcessingStage.h"

#include <cstdio>
#include <mutex>
#include <string>
#include <string_view>

#include <termios.h>

/// What depends on whether a stream is a terminal.
namespace varnic::cli::Terminal {

/// Whether escape sequences may go to the stream: a terminal, and NO_COLOR (no-color.org) is not set.
bool isStyled(std::FILE* stream);

/// The text in bold where the stream is a terminal, else as it is.
std::string bold(std::string_view text, std::FILE* stream = stdout);

/// The text in a fainter tone where the stream is a terminal, else as it is.
std::string faint(std::string_view text, std::FILE* stream = stdout);

/// Keeps the terminal of standard input from showing what is typed, as long as it lives. An interrupt or a polite kill
/// ends a read from it with an error instead of the program, so that the terminal never stays silent. One at a time.
class SilentInput {
public:
    SilentInput();
    SilentInput(const SilentInput&) = delete;
    SilentInput& operator=(const SilentInput&) = delete;
    ~SilentInput();

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
