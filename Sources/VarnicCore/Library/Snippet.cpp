#include "VarnicCore/Library/Snippet.h"

#include "VarnicCore/Library/SearchTerms.h"
#include "VarnicCore/Text/TextKit.h"
#include "VarnicCore/Text/Unicode.h"

#include <algorithm>
#include <utility>

namespace varnic {

namespace {

constexpr std::string_view ellipsis = "…";

/// Which character of a text holds the byte: `starts` are the byte offsets at which characters begin.
std::size_t characterAt(const std::vector<std::size_t>& starts, std::size_t byte) {
    return static_cast<std::size_t>(std::ranges::upper_bound(starts, byte) - starts.begin()) - 1;
}

/// The character at which the first occurrence of the term begins, or 0 where the folding changes the number of
/// characters or the term is not found.
std::size_t findCenter(std::string_view text, const std::vector<std::size_t>& starts, std::string_view term) {
    const std::string folded = TextKit::fold(text);
    const std::size_t found = findTerm(folded, term);
    if (found == std::string_view::npos) {
        return 0;
    }
    const std::vector<std::size_t> foldedStarts = Unicode::characterStarts(folded);
    return foldedStarts.size() == starts.size() ? characterAt(foldedStarts, found) : 0;
}

/// A text and the byte offsets at which its user-visible characters begin.
struct Line {
    std::string text;
    std::vector<std::size_t> starts;

    void add(std::string_view character) {
        starts.push_back(text.size());
        text += character;
    }
};

/// The characters of the text from `from` up to `to`, each newline as a blank, with "…" for what is left out.
Line extract(std::string_view text, const std::vector<std::size_t>& starts, std::size_t from, std::size_t to) {
    Line line;
    bool hasNewBlanks = false;
    if (from > 0) {
        line.add(ellipsis);
    }
    for (std::size_t i = from; i < to; ++i) {
        const std::size_t end = i + 1 < starts.size() ? starts[i + 1] : text.size();
        const std::string_view character = text.substr(starts[i], end - starts[i]);
        const bool isNewline = Unicode::any(character, Unicode::isNewline);
        line.add(isNewline ? " " : character);
        hasNewBlanks = hasNewBlanks || isNewline;
    }
    if (to < starts.size()) {
        line.add(ellipsis);
    }
    if (hasNewBlanks) { // a mark that stood alone after a newline joins the blank
        line.starts = Unicode::characterStarts(line.text);
    }
    return line;
}

char lowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// The line folded character by character, so that matches can be given in user-visible characters: where each
/// one's part begins.
Line foldedByCharacter(const Line& line) {
    Line folded;
    folded.text.reserve(line.text.size());
    folded.starts.reserve(line.starts.size());
    for (std::size_t i = 0; i < line.starts.size(); ++i) {
        const std::size_t end = i + 1 < line.starts.size() ? line.starts[i + 1] : line.text.size();
        const std::string_view character(line.text.data() + line.starts[i], end - line.starts[i]);
        folded.starts.push_back(folded.text.size());
        if (character.size() == 1 && static_cast<unsigned char>(character.front()) < 0x80) {
            folded.text += lowerAscii(character.front());
        } else {
            TextKit::appendFolded(character, folded.text);
        }
    }
    return folded;
}

std::vector<Highlight> highlight(const Line& line, std::span<const std::string_view> terms) {
    const Line folded = foldedByCharacter(line);
    std::vector<Highlight> found;
    for (const std::string_view term : terms) {
        for (std::size_t at = folded.text.find(term); at != std::string::npos;
             at = folded.text.find(term, at + term.size())) {
            found.push_back({characterAt(folded.starts, at), characterAt(folded.starts, at + term.size() - 1) + 1});
        }
    }
    std::ranges::stable_sort(found, {}, &Highlight::begin);
    return found;
}

} // namespace

std::vector<Highlight> findHighlights(std::string_view text, std::span<const std::string_view> terms) {
    return highlight({std::string(text), Unicode::characterStarts(text)}, terms);
}

Snippet snip(std::string_view text, std::span<const std::string_view> terms, std::size_t radius) {
    const std::vector<std::size_t> starts = Unicode::characterStarts(text);
    const std::size_t center = terms.empty() ? 0 : findCenter(text, starts, terms.front());
    const std::size_t from = center - std::min(center, radius);
    const std::size_t to = std::min(center + 2 * radius, starts.size());

    Line line = extract(text, starts, from, to);
    std::vector<Highlight> highlights = highlight(line, terms);
    return {std::move(line.text), std::move(highlights)};
}

} // namespace varnic
