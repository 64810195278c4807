#pragma once

#include "VarnicCore/Library/NoteSearch.h"
#include "VarnicCore/Library/SearchTerms.h"

#include <memory>
#include <span>
#include <vector>

namespace varnic {

/// What a search finds in one note, best first, and how good that is together.
struct NoteHits {
    /// None where there is nothing.
    std::shared_ptr<const std::vector<SearchHit>> hits;
    double score = 0;
};

/// The hits of each note, on as many threads as the machine has cores.
std::vector<NoteHits> searchEach(const SearchTerms& terms, std::span<const Note* const> notes);

/// The notes that have hits, best first, equal ones newest first. `found` has one element for each note.
std::vector<NoteMatch> ranked(std::span<const Note> notes, std::vector<NoteHits> found);

} // namespace varnic
