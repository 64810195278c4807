#include "VarnicCore/Transcript/Utterances.h"

#include "VarnicCore/Text/Tokens.h"
#include "VarnicCore/Text/Unicode.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace varnic::Utterances {

namespace {

/// A sentence end followed by more than this pause (seconds) ends a line.
constexpr double sentencePause = 0.35;
/// A line of more tokens than this ends at the next sentence end, pause or not.
constexpr std::size_t longLine = 30;

struct TimedToken {
    Token token;
    double start;
    double end;
};

bool isLetterOrNumber(char32_t c) {
    return Unicode::isLetter(c) || Unicode::isNumber(c);
}

/// Whether nothing is left of the text but punctuation: such a token does not use a word up.
bool hasNoKey(std::string_view text) {
    return !Unicode::any(text, isLetterOrNumber);
}

std::vector<TimedToken> align(const std::vector<Token>& tokens, const std::vector<TimedWord>& words) {
    std::vector<TimedToken> aligned;
    aligned.reserve(tokens.size());
    std::size_t next = 0;
    for (const Token& token : tokens) {
        const TimedWord& word = words[std::min(next, words.size() - 1)];
        aligned.push_back({token, word.start, word.end()});
        if (!hasNoKey(token.text) || hasNoKey(word.text)) {
            next = std::min(words.size(), next + 1);
        }
    }
    return aligned;
}

bool endsSentence(std::string_view token) {
    constexpr auto marks = std::to_array<std::string_view>({".", "?", "!", "。", "？", "！", "؟", "۔", "।", "։"});
    return std::ranges::any_of(marks, [token](std::string_view mark) { return token.ends_with(mark); });
}

/// Gathers tokens into lines.
class LineBuilder {
public:
    LineBuilder(Speaker speaker, double offset) : speaker_(speaker), offset_(offset) {}

    void add(const TimedToken& token, double gap) {
        if (pending_ == 0) {
            start_ = token.start;
        } else if (token.start - lastEnd_ > gap) {
            flush();
            start_ = token.start;
        }
        Tokens::append(text_, token.token.text, token.token.isJoined);
        ++pending_;
        lastEnd_ = std::max(lastEnd_, token.end);
    }

    void flush() {
        if (pending_ > 0) {
            lines_.emplace_back(speaker_, start_ + offset_, lastEnd_ + offset_, std::exchange(text_, {}));
            pending_ = 0;
        }
    }

    [[nodiscard]] std::size_t pending() const { return pending_; }

    std::vector<Segment> take() { return std::move(lines_); }

private:
    Speaker speaker_;
    double offset_;
    double start_ = 0;
    double lastEnd_ = 0;
    /// The line's tokens, and how many there are.
    std::string text_;
    std::size_t pending_ = 0;
    std::vector<Segment> lines_;
};

} // namespace

std::vector<Segment> build(const std::vector<TimedWord>& words, const std::optional<std::string>& formatted,
                           Speaker speaker, double offset, double gap) {
    if (words.empty()) {
        return {};
    }
    std::string text;
    if (formatted) {
        text = *formatted;
    } else {
        for (const TimedWord& word : words) {
            Tokens::append(text, word.text, word.isJoined);
        }
    }
    const std::vector<TimedToken> tokens = align(Tokens::split(text), words);
    LineBuilder lines(speaker, offset);
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        lines.add(tokens[i], gap);
        const bool isLast = i + 1 == tokens.size();
        if (endsSentence(tokens[i].token.text) &&
            (isLast || tokens[i + 1].start - tokens[i].end > sentencePause || lines.pending() > longLine)) {
            lines.flush();
        }
    }
    lines.flush();
    return lines.take();
}

} // namespace varnic::Utterances
