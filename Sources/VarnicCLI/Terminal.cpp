#include "VarnicCLI/Terminal.h"

#include <fmt/format.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

namespace varnic::cli::Terminal {

namespace {

constexpr std::size_t barWidth = 30;
constexpr std::string_view eraseLine = "\r\033[K";

std::string styled(std::string_view text, int code, std::FILE* stream) {
    return isStyled(stream) ? fmt::format("\033[{}m{}\033[0m", code, text) : std::string(text);
}

volatile std::sig_atomic_t interrupted = 0;

void noteInterrupt(int /*signal*/) {
    interrupted = 1;
}

} // namespace

bool isStyled(std::FILE* stream) {
    return isatty(fileno(stream)) == 1 && std::getenv("NO_COLOR") == nullptr;
}

std::string bold(std::string_view text, std::FILE* stream) {
    return styled(text, 1, stream);
}

std::string faint(std::string_view text, std::FILE* stream) {
    return styled(text, 2, stream);
}

SilentInput::SilentInput() {
    struct sigaction action{};
    action.sa_handler = noteInterrupt; // Without SA_RESTART, so that a read ends.
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    tcgetattr(STDIN_FILENO, &before_);
    termios silent = before_;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
}

SilentInput::~SilentInput() {
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_);
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
}

bool SilentInput::wasInterrupted() {
    return interrupted != 0;
}

StatusLine::StatusLine() : isTerminal_(isatty(STDERR_FILENO) == 1) {}

void StatusLine::show(const std::string& text) {
    if (!isTerminal_) {
        return;
    }
    const std::lock_guard guard(lock_);
    if (text != drawn_) {
        // Without the exception of fmt::print: the terminal may have been closed.
        std::fputs(fmt::format("{}{}", eraseLine, text).c_str(), stderr);
        drawn_ = text;
    }
}

void StatusLine::clear() {
    const std::lock_guard guard(lock_);
    if (!drawn_.empty()) {
        std::fputs(eraseLine.data(), stderr);
        drawn_.clear();
    }
}

std::string bar(ProcessingStage stage) {
    const double part = stage.kind == ProcessingStage::Kind::transcribing ? stage.fraction : 1;
    const auto full = static_cast<std::size_t>(part * static_cast<double>(barWidth));
    return fmt::format("[{}{}] {}", std::string(full, '#'), std::string(barWidth - full, '.'), stage.label());
}

} // namespace varnic::cli::Terminal
