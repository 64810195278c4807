#pragma once

#include "VarnicCore/Library/NoteHits.h"

#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace varnic {

/// Finds what NoteSearch::search finds, again and again while notes change and the query is being typed: it remembers
/// what it found in each note, and looks only where that may have changed. One thread at a time.
class RepeatedSearch {
public:
    /// The matches point into `notes`, whose ids all differ.
    std::vector<NoteMatch> search(std::string_view query, std::span<const Note> notes);

    /// To be called for each note that has changed or is gone since the last search.
    void forget(const Uuid& id) { known_.erase(id); }

private:
    void take(std::vector<std::string> terms);

    std::vector<std::string> terms_;
    /// What the terms find in each note.
    std::unordered_map<Uuid, NoteHits> known_;
};

} // namespace varnic
