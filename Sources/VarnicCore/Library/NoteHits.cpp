#include "VarnicCore/Library/NoteHits.h"

#include "VarnicCore/Text/TextKit.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace varnic {

namespace {

/// Characters shown before a match; twice as many are shown from its start.
constexpr std::size_t snippetRadius = 60;
/// What a hit in the title adds to a note's score.
constexpr double titleBonus = 10;

double scoreOf(SearchHit::Field field, std::size_t count) {
    return weight(field) * static_cast<double>(count);
}

} // namespace

std::span<const std::size_t> TermCounter::count(NoteTexts& texts) {
    folded_.clear();
    ends_.clear();
    for (std::size_t index = 0; index < texts.size(); ++index) {
        // Piece by piece gives the same as their sum: no separator joins with what follows it.
        for (const std::string_view piece : texts.pieces(index)) {
            TextKit::appendFolded(piece, folded_);
        }
        ends_.push_back(folded_.size());
        folded_ += '\n';
    }
    counts_.resize(ends_.size());
    terms_.countInEach(folded_, ends_, counts_);
    return counts_;
}

NoteScore TermCounter::score(const Note& note) {
    NoteTexts texts(note);
    NoteScore sum;
    const auto counts = count(texts);
    for (std::size_t index = 0; index < counts.size(); ++index) {
        if (counts[index] > 0) {
            ++sum.hits;
            sum.score += scoreOf(texts.field(index), counts[index]);
        }
    }
    sum.score += counts.front() > 0 ? titleBonus : 0; // the first text
    return sum;
}

NoteHits::NoteHits(const Note& note, const SearchTerms& terms) : note_(note), terms_(terms), texts_(note) {
    TermCounter counter(terms);
    const auto counts = counter.count(texts_);
    for (std::size_t index = 0; index < counts.size(); ++index) {
        if (counts[index] > 0) {
            found_.push_back({index, scoreOf(texts_.field(index), counts[index])});
        }
    }
    std::ranges::stable_sort(found_, std::greater{}, &Found::score);
}

SearchHit NoteHits::hit(std::size_t rank) {
    const auto [index, score] = found_[rank];
    const std::string text = texts_.text(index);
    const std::string folded = TextKit::fold(text);
    Snippet snippet = snip(text, terms_.foundIn(folded), snippetRadius);
    const Segment* const line = texts_.segment(index);
    const Block* const block = texts_.block(index);
    return {.noteID = note_.id,
            .field = texts_.field(index),
            .snippet = std::move(snippet.text),
            .highlights = std::move(snippet.highlights),
            .time = line != nullptr ? std::optional(line->start) : std::nullopt,
            .blockID = block != nullptr ? std::optional(block->id) : std::nullopt,
            .score = score};
}

} // namespace varnic
