#include "VarnicCore/Library/RepeatedSearch.h"

#include "VarnicCore/Library/SearchTerms.h"

#include <algorithm>
#include <utility>

namespace varnic {

namespace {

/// Whether every text that holds one of the new terms holds one of the old ones too.
bool narrows(const std::vector<std::string>& terms, const std::vector<std::string>& old) {
    return std::ranges::all_of(terms, [&old](const std::string& term) {
        return std::ranges::any_of(old, [&term](const std::string& before) { return term.contains(before); });
    });
}

} // namespace

void RepeatedSearch::take(std::vector<std::string> terms) {
    if (terms == terms_) {
        return;
    }
    if (narrows(terms, terms_)) {
        std::erase_if(known_, [](const auto& entry) { return entry.second.hits != nullptr; });
    } else {
        known_.clear();
    }
    terms_ = std::move(terms);
}

std::vector<NoteMatch> RepeatedSearch::search(std::string_view query, std::span<const Note> notes) {
    const SearchTerms terms(query);
    take(terms.all());
    if (terms.empty()) {
        known_.clear();
        return {};
    }
    std::vector<const Note*> unknown;
    for (const Note& note : notes) {
        if (!known_.contains(note.id)) {
            unknown.push_back(&note);
        }
    }
    std::vector<NoteHits> found = searchEach(terms, unknown);
    for (std::size_t i = 0; i < unknown.size(); ++i) {
        known_[unknown[i]->id] = std::move(found[i]);
    }
    std::vector<NoteHits> all;
    all.reserve(notes.size());
    for (const Note& note : notes) {
        all.push_back(known_.at(note.id));
    }
    return ranked(notes, std::move(all));
}

} // namespace varnic
