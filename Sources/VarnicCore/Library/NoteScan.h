#pragma once

#include "VarnicCore/Library/NoteHits.h"
#include "VarnicCore/Library/SharedNotes.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <span>
#include <stop_token>
#include <vector>

namespace varnic {

/// One scan of many notes on all cores.
class NoteScan {
public:
    /// All must outlive this.
    NoteScan(const SearchTerms& terms, std::span<const SharedNote> notes, const std::stop_token& stop);

    /// Calls `pause` now and then on this thread. False where it was stopped.
    bool run(const std::function<void()>& pause);

    /// The score of each note, as far as known: a note that has not been read counts as one without hits. To be called
    /// in `pause`, or after the run.
    [[nodiscard]] std::vector<NoteScore> scores() const;

private:
    bool doBatch();

    const SearchTerms& terms_;
    std::span<const SharedNote> notes_;
    const std::stop_token& stop_;
    std::vector<NoteScore> scores_;
    /// For each batch, whether its scores stand.
    std::vector<std::atomic<bool>> isDone_;
    std::atomic<std::size_t> nextBatch_{0};
};

} // namespace varnic
