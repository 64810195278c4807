#include "VarnicCore/Library/NoteSearch.h"

#include "VarnicCore/Library/NoteHits.h"
#include "VarnicCore/Library/RepeatedSearch.h"

#include <fmt/format.h>

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

std::vector<NoteMatch> NoteSearch::search(std::string_view query, std::span<const Note> notes) {
    std::vector<SharedNote> all;
    all.reserve(notes.size());
    for (const Note& note : notes) {
        all.emplace_back(SharedNote(), &note); // shared with nobody
    }
    const auto found = RepeatedSearch().search(query, all, {}, nullptr);
    std::vector<NoteMatch> matches;
    matches.reserve(found->notes.size());
    for (const FoundNote& one : found->notes) {
        NoteHits hits(*one.note, found->terms);
        NoteMatch& match = matches.emplace_back(one.note.get());
        for (std::size_t rank = 0; rank < hits.size(); ++rank) {
            match.hits.push_back(hits.hit(rank));
        }
    }
    return matches;
}

} // namespace varnic
