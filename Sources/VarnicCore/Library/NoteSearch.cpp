#include "VarnicCore/Library/NoteSearch.h"

#include "VarnicCore/Library/SearchTerms.h"
#include "VarnicCore/Text/TextKit.h"
#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <future>
#include <iterator>
#include <thread>

namespace varnic {

namespace {

using Field = SearchHit::Field;

/// Characters shown before a match; twice as many are shown from its start.
constexpr std::size_t snippetRadius = 60;
/// What a hit in the title adds to a note's score.
constexpr double titleBonus = 10;
/// Libraries of fewer notes are searched on one thread: starting another takes longer.
constexpr std::size_t notesPerThread = 64;

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

Field fieldOf(BlockKind kind) {
    switch (kind) {
    case BlockKind::heading:
    case BlockKind::subheading:
        return Field::heading;
    case BlockKind::todo:
        return Field::todo;
    case BlockKind::flashcard:
        return Field::flashcard;
    case BlockKind::table:
        return Field::table;
    default:
        return Field::body;
    }
}

/// The cells of a table with what separates them.
std::vector<std::string_view> joinedCells(const Block& table) {
    std::vector<std::string_view> pieces;
    for (const auto& row : table.rows) {
        for (const std::string& cell : row) {
            if (!pieces.empty()) {
                pieces.emplace_back(" · ");
            }
            pieces.emplace_back(cell);
        }
    }
    return pieces;
}

/// Where a hit leads to.
struct Place {
    Field field = Field::title;
    std::optional<double> time;
    std::optional<Uuid> blockID;
};

struct ScoredMatch {
    NoteMatch match;
    double score = 0;
};

/// Searches one note after another; its buffers are kept between texts.
class Searcher {
public:
    explicit Searcher(const SearchTerms& terms) : terms_(terms) {}

    /// The note's hits; a match without any where the note holds no term.
    ScoredMatch search(const Note& note) {
        match_ = {{&note, {}}, 0};
        tryText({note.displayTitle()}, {Field::title, {}, {}});
        for (const Block& block : note.blocks) {
            tryBlock(block);
        }
        if (note.call) {
            tryCall(*note.call);
        }
        auto& hits = match_.match.hits;
        std::ranges::stable_sort(hits, std::greater{}, &SearchHit::score);
        for (const SearchHit& hit : hits) {
            match_.score += hit.score;
        }
        if (std::ranges::any_of(hits, [](const SearchHit& hit) { return hit.field == Field::title; })) {
            match_.score += titleBonus;
        }
        return std::move(match_);
    }

private:
    void tryBlock(const Block& block) {
        const Place place{fieldOf(block.kind), {}, block.id};
        switch (block.kind) {
        case BlockKind::divider:
            break;
        case BlockKind::flashcard:
            tryText({block.text, " — ", block.back}, place);
            break;
        case BlockKind::table:
            tryText(joinedCells(block), place);
            break;
        default:
            tryText({block.text}, place);
            break;
        }
    }

    void tryCall(const CallRecord& call) {
        const std::string you = "You: ";
        const std::string them = std::string(Unicode::trimBlanks(call.name(Speaker::them, {}))) + ": ";
        for (const Segment& segment : call.segments) {
            tryText({segment.speaker == Speaker::you ? you : them, segment.text},
                    {Field::transcript, segment.start, {}});
        }
        if (call.digest) {
            tryText({call.digest->email.subject, " — ", call.digest->email.body}, {Field::email, {}, {}});
        }
    }

    void tryText(std::initializer_list<std::string_view> pieces, const Place& place) {
        tryText(std::span(pieces.begin(), pieces.size()), place);
    }

    /// Makes a hit where the text of these pieces holds a term. The pieces are folded one by one, which gives the same
    /// as folding their sum: no separator joins with what follows it.
    void tryText(std::span<const std::string_view> pieces, const Place& place) {
        folded_.clear();
        for (const std::string_view piece : pieces) {
            TextKit::appendFolded(piece, folded_);
        }
        const auto found = terms_.foundIn(folded_);
        if (found.empty()) {
            return;
        }
        const std::string text = fmt::format("{}", fmt::join(pieces, ""));
        Snippet snippet = snip(text, found, snippetRadius);
        match_.match.hits.push_back({match_.match.note->id, place.field, std::move(snippet.text),
                                     std::move(snippet.highlights), place.time, place.blockID,
                                     weight(place.field) * static_cast<double>(found.size())});
    }

    const SearchTerms& terms_;
    std::string folded_;
    ScoredMatch match_;
};

std::vector<ScoredMatch> searchPart(const SearchTerms& terms, std::span<const Note> notes) {
    Searcher searcher(terms);
    std::vector<ScoredMatch> matches;
    for (const Note& note : notes) {
        if (ScoredMatch match = searcher.search(note); !match.match.hits.empty()) {
            matches.push_back(std::move(match));
        }
    }
    return matches;
}

/// The matches of all notes in their order, searched in as many parts as there are cores.
std::vector<ScoredMatch> searchAll(const SearchTerms& terms, std::span<const Note> notes) {
    const std::size_t cores = std::max(1U, std::thread::hardware_concurrency());
    const std::size_t parts = std::clamp<std::size_t>(notes.size() / notesPerThread, 1, cores);
    std::vector<std::future<std::vector<ScoredMatch>>> others;
    const auto part = [&](std::size_t k) {
        const std::size_t begin = notes.size() * k / parts;
        return notes.subspan(begin, notes.size() * (k + 1) / parts - begin);
    };
    for (std::size_t k = 1; k < parts; ++k) {
        others.push_back(
            std::async(std::launch::async, [&terms, share = part(k)] { return searchPart(terms, share); }));
    }
    std::vector<ScoredMatch> matches = searchPart(terms, part(0));
    for (auto& other : others) {
        std::ranges::move(other.get(), std::back_inserter(matches));
    }
    return matches;
}

bool isBetter(const ScoredMatch& a, const ScoredMatch& b) {
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

std::vector<NoteMatch> NoteSearch::search(std::string_view query, std::span<const Note> notes) {
    const SearchTerms terms(query);
    if (terms.empty()) {
        return {};
    }
    std::vector<ScoredMatch> scored = searchAll(terms, notes);
    std::ranges::stable_sort(scored, isBetter);
    std::vector<NoteMatch> matches;
    matches.reserve(scored.size());
    for (ScoredMatch& one : scored) {
        matches.push_back(std::move(one.match));
    }
    return matches;
}

} // namespace varnic
