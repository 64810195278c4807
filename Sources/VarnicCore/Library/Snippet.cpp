#include "VarnicCore/Library/Snippet.h"

#include "VarnicCore/Library/SearchTerms.h"
#include "VarnicCore/Text/TextKit.h"
#include "VarnicCore/Text/Unicode.h"

#include <algorithm>

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

/// The characters of the text from `from` up to `to`, each newline as a blank.
std::string oneLine(std::string_view text, const std::vector<std::size_t>& starts, std::size_t from, std::size_t to) {
    std::string line;
    for (std::size_t i = from; i < to; ++i) {
        const std::size_t end = i + 1 < starts.size() ? starts[i + 1] : text.size();
        const std::string_view character = text.substr(starts[i], end - starts[i]);
        line += Unicode::any(character, Unicode::isNewline) ? " " : character;
    }
    return line;
}

/// For every byte of the folded text the character of the text that it comes from. Folding goes character by character,
/// so that a match can be told in the characters that a reader sees.
struct FoldedCharacters {
    std::string folded;
    /// Where each character's part of `folded` begins, and its end behind the last.
    std::vector<std::size_t> starts;

    explicit FoldedCharacters(std::string_view text) {
        const std::vector<std::size_t> characters = Unicode::characterStarts(text);
        for (std::size_t i = 0; i < characters.size(); ++i) {
            const std::size_t end = i + 1 < characters.size() ? characters[i + 1] : text.size();
            starts.push_back(folded.size());
            folded += TextKit::fold(text.substr(characters[i], end - characters[i]));
        }
    }
};

std::vector<Highlight> highlight(std::string_view text, std::span<const std::string_view> terms) {
    const FoldedCharacters characters(text);
    std::vector<Highlight> found;
    for (const std::string_view term : terms) {
        for (std::size_t at = characters.folded.find(term); at != std::string::npos;
             at = characters.folded.find(term, at + term.size())) {
            found.push_back(
                {characterAt(characters.starts, at), characterAt(characters.starts, at + term.size() - 1) + 1});
        }
    }
    std::ranges::stable_sort(found, {}, &Highlight::begin);
    return found;
}

} // namespace

Snippet snip(std::string_view text, std::span<const std::string_view> terms, std::size_t radius) {
    const std::vector<std::size_t> starts = Unicode::characterStarts(text);
    const std::size_t center = terms.empty() ? 0 : findCenter(text, starts, terms.front());
    const std::size_t from = center - std::min(center, radius);
    const std::size_t to = std::min(center + 2 * radius, starts.size());

    Snippet snippet{oneLine(text, starts, from, to), {}};
    if (from > 0) {
        snippet.text.insert(0, ellipsis);
    }
    if (to < starts.size()) {
        snippet.text += ellipsis;
    }
    snippet.highlights = highlight(snippet.text, terms);
    return snippet;
}

} // namespace varnic
