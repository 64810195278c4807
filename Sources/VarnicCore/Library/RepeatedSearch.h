#pragma once

#include "VarnicCore/Library/NoteHits.h"
#include "VarnicCore/Library/SharedNotes.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace varnic {

/// A note that a search found; NoteHits gives its hits.
struct FoundNote {
    SharedNote note;
    std::size_t hits = 0;
    double score = 0;

    bool operator==(const FoundNote&) const = default;
};

/// The notes that hold a query's terms.
struct FoundNotes {
    SearchTerms terms;
    /// Best first, equal ones newest first.
    std::vector<FoundNote> notes;
    /// The hits of all notes together.
    std::size_t hits = 0;
};

/// Finds what NoteSearch::search finds, again and again while notes change and the query is being typed: it remembers
/// how well each note matched, and reads only those again for which that may have changed. One thread at a time; it
/// uses as many threads of its own as the machine has cores.
class RepeatedSearch {
public:
    /// Takes what was found up to now. Called on the thread that searches.
    using Preview = std::function<void(FoundNotes found)>;

    /// A search that takes longer than this reports once what it has found, as soon as that is something.
    static constexpr std::chrono::milliseconds previewDelay{30};

    explicit RepeatedSearch(std::chrono::milliseconds delay = previewDelay) : previewDelay_(delay) {}

    /// Nothing where it was stopped, which takes no longer than the reading of one note. `preview` is called once at
    /// most, and may be null.
    std::optional<FoundNotes> search(std::string_view query, std::span<const SharedNote> notes,
                                     const std::stop_token& stop, const Preview& preview);

private:
    void take(std::vector<std::string> terms);
    void remember(std::span<const SharedNote> notes, std::span<const NoteScore> scores,
                  std::span<const std::size_t> fresh);

    std::chrono::milliseconds previewDelay_;
    std::vector<std::string> terms_;
    /// How well each note matches. The map owns the notes, so that no other one can take over the address of one.
    std::unordered_map<SharedNote, NoteScore> known_;
};

} // namespace varnic
