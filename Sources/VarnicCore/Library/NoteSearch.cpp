#include "VarnicCore/Library/NoteSearch.h"

#include "VarnicCore/Library/NoteHits.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

namespace varnic {

namespace {

struct FieldNames {
    std::string_view rawValue;
    double weight;
};

constexpr std::array<FieldNames, 8> fieldNames{{{"title", 5.0},
                                                {"heading", 3.0},
                                                {"body", 2.0},
                                                {"todo", 2.0},
                                                {"flashcard", 2.0},
                                                {"table", 1.5},
                                                {"transcript", 1.0},
                                                {"email", 0.5}}};

/// A note and how good its hits are together.
struct Ranked {
    NoteMatch match;
    double score = 0;
};

bool isBetter(const Ranked& a, const Ranked& b) {
    return a.score != b.score ? a.score > b.score : a.match.note->created > b.match.note->created;
}

} // namespace

std::string SearchHit::id() const {
    std::string place;
    if (blockID) {
        place = blockID->text();
    } else if (time) {
        place = fmt::format("{}", *time);
    }
    return fmt::format("{}/{}/{}", noteID.text(), rawValue(field), place);
}

std::string_view rawValue(SearchHit::Field field) {
    return fieldNames.at(static_cast<std::size_t>(field)).rawValue;
}

double weight(SearchHit::Field field) {
    return fieldNames.at(static_cast<std::size_t>(field)).weight;
}

std::vector<NoteMatch> ranked(std::span<const Note> notes, std::vector<NoteHits> found) {
    std::vector<Ranked> all;
    for (std::size_t i = 0; i < notes.size(); ++i) {
        if (found[i].hits) {
            all.push_back({{&notes[i], std::move(found[i].hits)}, found[i].score});
        }
    }
    std::ranges::stable_sort(all, isBetter);
    std::vector<NoteMatch> matches;
    matches.reserve(all.size());
    for (Ranked& one : all) {
        matches.push_back(std::move(one.match));
    }
    return matches;
}

std::vector<NoteMatch> NoteSearch::search(std::string_view query, std::span<const Note> notes) {
    const SearchTerms terms(query);
    if (terms.empty()) {
        return {};
    }
    std::vector<const Note*> all;
    all.reserve(notes.size());
    for (const Note& note : notes) {
        all.push_back(&note);
    }
    return ranked(notes, searchEach(terms, all));
}

} // namespace varnic
