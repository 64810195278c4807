#include "VarnicCore/Library/RepeatedSearch.h"

#include "VarnicCore/Library/NoteScan.h"

#include <algorithm>
#include <utility>

namespace varnic {

namespace {

using Clock = std::chrono::steady_clock;

/// Whether every text that holds one of the new terms holds one of the old ones too.
bool narrows(const std::vector<std::string>& terms, const std::vector<std::string>& old) {
    return std::ranges::all_of(terms, [&old](const std::string& term) {
        return std::ranges::any_of(old, [&term](const std::string& before) { return term.contains(before); });
    });
}

bool isBetter(const FoundNote& a, const FoundNote& b) {
    return a.score != b.score ? a.score > b.score : a.note->created > b.note->created;
}

/// `scores` has one element for each note.
FoundNotes ranked(const SearchTerms& terms, std::span<const SharedNote> notes, std::span<const NoteScore> scores) {
    FoundNotes found{terms, {}, 0};
    for (std::size_t i = 0; i < notes.size(); ++i) {
        if (scores[i].hits > 0) {
            found.notes.push_back({notes[i], scores[i].hits, scores[i].score});
            found.hits += scores[i].hits;
        }
    }
    std::ranges::stable_sort(found.notes, isBetter);
    return found;
}

/// The scores of the notes that are known, and the notes that are still to be read.
struct Parts {
    std::vector<NoteScore> scores;
    std::vector<SharedNote> unread;
    /// The indices of the unread notes in `scores`.
    std::vector<std::size_t> places;

    [[nodiscard]] std::vector<NoteScore> with(const std::vector<NoteScore>& read) const {
        std::vector<NoteScore> all = scores;
        for (std::size_t i = 0; i < places.size(); ++i) {
            all[places[i]] = read[i];
        }
        return all;
    }
};

} // namespace

void RepeatedSearch::take(std::vector<std::string> terms) {
    if (terms == terms_) {
        return;
    }
    if (narrows(terms, terms_)) {
        std::erase_if(known_, [](const auto& entry) { return entry.second.hits > 0; });
    } else {
        known_.clear();
    }
    terms_ = std::move(terms);
}

void RepeatedSearch::remember(std::span<const SharedNote> notes, std::span<const NoteScore> scores,
                              std::span<const std::size_t> fresh) {
    for (const std::size_t place : fresh) {
        known_.emplace(notes[place], scores[place]);
    }
    if (known_.size() != notes.size()) { // some have changed or are gone
        known_.clear();
        for (std::size_t i = 0; i < notes.size(); ++i) {
            known_.emplace(notes[i], scores[i]);
        }
    }
}

std::optional<FoundNotes> RepeatedSearch::search(std::string_view query, std::span<const SharedNote> notes,
                                                 const std::stop_token& stop, const Preview& preview) {
    const auto begin = Clock::now();
    const SearchTerms terms(query);
    take(terms.all());
    if (terms.empty()) {
        known_.clear();
        return FoundNotes{terms, {}, 0};
    }
    Parts parts{.scores = std::vector<NoteScore>(notes.size()), .unread = {}, .places = {}};
    for (std::size_t i = 0; i < notes.size(); ++i) {
        if (const auto found = known_.find(notes[i]); found != known_.end()) {
            parts.scores[i] = found->second;
        } else {
            parts.unread.push_back(notes[i]);
            parts.places.push_back(i);
        }
    }
    NoteScan scan(terms, parts.unread, stop);
    auto due = begin + previewDelay_;
    bool isTold = preview == nullptr;
    const bool isWhole = scan.run([&] {
        if (isTold || Clock::now() < due) {
            return;
        }
        if (FoundNotes found = ranked(terms, notes, parts.with(scan.scores())); !found.notes.empty()) {
            isTold = true;
            preview(std::move(found));
        }
        due = Clock::now() + previewDelay_;
    });
    if (!isWhole) {
        return std::nullopt;
    }
    const std::vector<NoteScore> scores = parts.with(scan.scores());
    remember(notes, scores, parts.places);
    return ranked(terms, notes, scores);
}

} // namespace varnic
