#include "VarnicCLI/Terminal.h"

#include "VarnicCore/Text/Unicode.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unicode/uchar.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <iterator>

namespace varnic::cli::Terminal {

namespace {

constexpr std::size_t barWidth = 30;
constexpr std::string_view eraseLine = "\r\033[K";

// Where a style begins and ends in a text that is to be printed: noncharacters, which no text has a use for.
constexpr char32_t beginsBold = U'\uFDD0';
constexpr char32_t beginsFaint = U'\uFDD1';
constexpr char32_t endsStyle = U'\uFDD2';

std::string_view sequence(char32_t style) {
    switch (style) {
    case beginsBold:
        return "\033[1m";
    case beginsFaint:
        return "\033[2m";
    default:
        return "\033[0m";
    }
}

/// The code points of the text one by one, with the bytes that they are written with.
template <typename Take>
void forEach(std::string_view text, Take take) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t begin = at;
        const char32_t c = Unicode::next(text, at);
        take(c, text.substr(begin, at - begin));
    }
}

bool isControl(char32_t c) {
    return c != U'\t' && c != U'\n' && u_charType(static_cast<UChar32>(c)) == U_CONTROL_CHAR;
}

/// The sign of a control character where it has one, and else the sign of a character that cannot be shown.
std::string sign(char32_t c) {
    constexpr char32_t pictures = 0x2400;
    constexpr char32_t pictureOfDelete = 0x2421;
    if (c < U' ') {
        return Unicode::utf8(icu::UnicodeString(static_cast<UChar32>(pictures + c)));
    }
    return Unicode::utf8(icu::UnicodeString(static_cast<UChar32>(c == 0x7F ? pictureOfDelete : 0xFFFD)));
}

std::string written(std::string_view text, bool isStyled) {
    std::string result;
    result.reserve(text.size());
    forEach(text, [&](char32_t c, std::string_view bytes) {
        if (c == beginsBold || c == beginsFaint || c == endsStyle) {
            result += isStyled ? sequence(c) : "";
        } else if (isControl(c) || (c == 0xFFFD && bytes.size() == 1)) {
            result += sign(c);
        } else {
            result += bytes;
        }
    });
    return result;
}

/// Escape sequences may go there.
bool isStyled(std::FILE* stream) {
    return isatty(fileno(stream)) == 1 && std::getenv("NO_COLOR") == nullptr;
}

std::string between(char32_t begin, std::string_view text) {
    const auto mark = [](char32_t c) { return Unicode::utf8(icu::UnicodeString(static_cast<UChar32>(c))); };
    return mark(begin).append(text).append(mark(endsStyle));
}

volatile std::sig_atomic_t interrupted = 0;

/// Readable once interrupted: a signal may come before the waiting begins, or to another thread.
int interruptEvent = -1;

void noteInterrupt(int /*signal*/) {
    interrupted = 1;
    eventfd_write(interruptEvent, 1);
}

} // namespace

std::string bold(std::string_view text) {
    return between(beginsBold, text);
}

std::string faint(std::string_view text) {
    return between(beginsFaint, text);
}

std::string plain(std::string_view text) {
    return written(text, false);
}

void write(std::FILE* stream, std::string_view text) {
    // Without the exception of fmt::print: the terminal, or who reads from the pipe, may be gone.
    std::fputs(written(text, isStyled(stream)).c_str(), stream);
}

void printJson(std::string_view json) {
    std::string shown;
    const bool isTerminal = isatty(STDOUT_FILENO) == 1;
    forEach(json, [&](char32_t c, std::string_view bytes) {
        if (isTerminal && isControl(c)) {
            // The writer of JSON has escaped those below U+0020; the others can only stand in strings.
            fmt::format_to(std::back_inserter(shown), "\\u{:04x}", static_cast<unsigned>(c));
        } else {
            shown += bytes;
        }
    });
    fmt::print("{}\n", shown);
}

void printFile(std::string_view bytes) {
    fmt::print("{}", isatty(STDOUT_FILENO) == 1 ? plain(bytes) : std::string(bytes));
}

SilentInput::SilentInput() {
    interruptEvent = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    struct sigaction action{};
    action.sa_handler = noteInterrupt;
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
    close(interruptEvent);
}

bool SilentInput::wait() {
    std::array<pollfd, 2> inputs{{{STDIN_FILENO, POLLIN, 0}, {interruptEvent, POLLIN, 0}}};
    while (poll(inputs.data(), inputs.size(), -1) < 0 && errno == EINTR) {
    }
    return !wasInterrupted();
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
        std::fputs(fmt::format("{}{}", eraseLine, plain(text)).c_str(), stderr);
        drawn_ = text;
    }
}

void StatusLine::clear() {
    const std::lock_guard guard(lock_);
    if (!drawn_.empty()) {
        std::fputs(std::string(eraseLine).c_str(), stderr);
        drawn_.clear();
    }
}

std::string bar(ProcessingStage stage) {
    const double part = stage.kind == ProcessingStage::Kind::transcribing ? stage.fraction : 1;
    const auto full = static_cast<std::size_t>(part * static_cast<double>(barWidth));
    return fmt::format("[{}{}] {}", std::string(full, '#'), std::string(barWidth - full, '.'), stage.label());
}

} // namespace varnic::cli::Terminal
