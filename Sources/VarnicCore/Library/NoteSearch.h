#pragma once

#include "VarnicCore/Library/Snippet.h"
#include "VarnicCore/Models/Note.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace varnic {

/// One place that matched a search.
struct SearchHit {
    /// Where in a note a text stands, in order of the fields' weights.
    enum class Field { title, heading, body, todo, flashcard, table, transcript, email };

    Uuid noteID;
    Field field = Field::title;
    /// The text shown, one line.
    std::string snippet;
    /// What to highlight in it, in order.
    std::vector<Highlight> highlights;
    /// Seconds into the call, for a hit in the transcript.
    std::optional<double> time;
    /// For a hit in a block.
    std::optional<Uuid> blockID;
    double score = 0;

    /// Tells the hit from the others of a list.
    [[nodiscard]] std::string id() const;

    bool operator==(const SearchHit&) const = default;
};

std::string_view rawValue(SearchHit::Field field);
/// What one term found in a text of this field adds to the hit's score.
double weight(SearchHit::Field field);

/// A note that matched and its hits, best first.
struct NoteMatch {
    /// One of the notes that were searched.
    const Note* note = nullptr;
    /// Never empty.
    std::vector<SearchHit> hits;
};

namespace NoteSearch {

/// Finds the query's terms in titles, blocks, transcripts and follow-up emails: a text needs one of them, more score
/// more. Case, accents and width do not count. Notes come best first, equal ones newest first. The matches point into
/// `notes`. No index: every text is scanned, on as many threads as the machine has cores. RepeatedSearch is for those
/// who do not need every hit at once. Any thread.
std::vector<NoteMatch> search(std::string_view query, std::span<const Note> notes);

} // namespace NoteSearch
} // namespace varnic
