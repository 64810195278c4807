#pragma once

#include "VarnicCore/Library/NoteSearch.h"
#include "VarnicCore/Library/NoteTexts.h"
#include "VarnicCore/Library/SearchTerms.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace varnic {

/// How well a note matches a search.
struct NoteScore {
    /// In how many texts something was found.
    std::size_t hits = 0;
    double score = 0;

    bool operator==(const NoteScore&) const = default;
};

/// Counts the terms in the texts of one note after another. One thread at a time.
class TermCounter {
public:
    /// The terms must outlive this.
    explicit TermCounter(const SearchTerms& terms) : terms_(terms) {}

    /// How many of the terms stand in each text. Valid until the next call.
    [[nodiscard]] std::span<const std::size_t> count(NoteTexts& texts);

    /// Reads the whole note, but makes no hits.
    [[nodiscard]] NoteScore score(const Note& note);

private:
    const SearchTerms& terms_;
    /// The folded texts, each with a newline after it, and where they end.
    std::string folded_;
    std::vector<std::size_t> ends_;
    std::vector<std::size_t> counts_;
};

/// What a search finds in one note, best first. A hit is made when it is asked for, since that takes longer than
/// finding it. One thread at a time.
class NoteHits {
public:
    /// The note and the terms must outlive this.
    NoteHits(const Note& note, const SearchTerms& terms);

    [[nodiscard]] std::size_t size() const { return found_.size(); }

    /// The hit of that rank.
    [[nodiscard]] SearchHit hit(std::size_t rank);

private:
    struct Found {
        /// In the note's texts.
        std::size_t index = 0;
        double score = 0;
    };

    const Note& note_;
    const SearchTerms& terms_;
    NoteTexts texts_;
    std::vector<Found> found_;
};

} // namespace varnic
