#include "VarnicCore/Library/NoteScan.h"

#include <algorithm>
#include <future>
#include <thread>

namespace varnic {

namespace {

/// Notes that a thread takes at a time: few, so that all threads end together.
constexpr std::size_t batchSize = 16;
/// Fewer notes than that are read on one thread: starting another takes longer.
constexpr std::size_t notesPerThread = 64;

} // namespace

NoteScan::NoteScan(const SearchTerms& terms, std::span<const SharedNote> notes, const std::stop_token& stop)
    : terms_(terms), notes_(notes), stop_(stop), scores_(notes.size()),
      isDone_((notes.size() + batchSize - 1) / batchSize) {}

bool NoteScan::run(const std::function<void()>& pause) {
    const std::size_t cores = std::max(1U, std::thread::hardware_concurrency());
    std::vector<std::future<void>> others;
    for (std::size_t k = 1; k < std::min(notes_.size() / notesPerThread, cores); ++k) {
        others.push_back(std::async(std::launch::async, [this] {
            while (doBatch()) {
            }
        }));
    }
    while (doBatch()) {
        pause();
    }
    for (auto& other : others) {
        other.get();
    }
    return !stop_.stop_requested();
}

bool NoteScan::doBatch() {
    const std::size_t batch = nextBatch_++;
    if (batch >= isDone_.size()) {
        return false;
    }
    TermCounter counter(terms_);
    const std::size_t end = std::min((batch + 1) * batchSize, notes_.size());
    for (std::size_t i = batch * batchSize; i < end; ++i) {
        if (stop_.stop_requested()) {
            return false;
        }
        scores_[i] = counter.score(*notes_[i]);
    }
    isDone_[batch].store(true, std::memory_order_release);
    return true;
}

std::vector<NoteScore> NoteScan::scores() const {
    std::vector<NoteScore> known(notes_.size());
    for (std::size_t i = 0; i < notes_.size(); ++i) {
        if (isDone_[i / batchSize].load(std::memory_order_acquire)) {
            known[i] = scores_[i];
        }
    }
    return known;
}

} // namespace varnic
