#include "VarnicCLI/Terminal.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cstdlib>

namespace varnic::cli::Terminal {

namespace {

constexpr std::size_t barWidth = 30;
constexpr std::string_view eraseLine = "\r\033[K";

std::string styled(std::string_view text, int code, std::FILE* stream) {
    return isStyled(stream) ? fmt::format("\033[{}m{}\033[0m", code, text) : std::string(text);
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

StatusLine::StatusLine() : isTerminal_(isatty(STDERR_FILENO) == 1) {}

void StatusLine::show(const std::string& text) {
    if (!isTerminal_) {
        return;
    }
    const std::lock_guard guard(lock_);
    if (text != drawn_) {
        fmt::print(stderr, "{}{}", eraseLine, text);
        drawn_ = text;
    }
}

void StatusLine::clear() {
    const std::lock_guard guard(lock_);
    if (!drawn_.empty()) {
        fmt::print(stderr, "{}", eraseLine);
        drawn_.clear();
    }
}

std::string bar(ProcessingStage stage) {
    const double part = stage.kind == ProcessingStage::Kind::transcribing ? stage.fraction : 1;
    const auto full = static_cast<std::size_t>(part * static_cast<double>(barWidth));
    return fmt::format("[{}{}] {}", std::string(full, '#'), std::string(barWidth - full, '.'), stage.label());
}

} // namespace varnic::cli::Terminal
