#include "VarnicCore/Library/NoteHits.h"

#include "VarnicCore/Text/TextKit.h"
#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <functional>
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

/// Searches one note after another; its buffers are kept between texts.
class Searcher {
public:
    explicit Searcher(const SearchTerms& terms) : terms_(terms) {}

    NoteHits search(const Note& note) {
        note_ = &note;
        found_.clear();
        tryText({note.displayTitle()}, {Field::title, {}, {}});
        for (const Block& block : note.blocks) {
            tryBlock(block);
        }
        if (note.call) {
            tryCall(*note.call);
        }
        if (found_.empty()) {
            return {};
        }
        std::ranges::stable_sort(found_, std::greater{}, &SearchHit::score);
        double score = std::ranges::any_of(found_, [](const SearchHit& hit) { return hit.field == Field::title; })
                           ? titleBonus
                           : 0;
        for (const SearchHit& hit : found_) {
            score += hit.score;
        }
        return {std::make_shared<const std::vector<SearchHit>>(std::move(found_)), score};
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
        found_.push_back({note_->id, place.field, std::move(snippet.text), std::move(snippet.highlights), place.time,
                          place.blockID, weight(place.field) * static_cast<double>(found.size())});
    }

    const SearchTerms& terms_;
    std::string folded_;
    const Note* note_ = nullptr;
    std::vector<SearchHit> found_;
};

std::vector<NoteHits> searchPart(const SearchTerms& terms, std::span<const Note* const> notes) {
    Searcher searcher(terms);
    std::vector<NoteHits> found;
    found.reserve(notes.size());
    for (const Note* note : notes) {
        found.push_back(searcher.search(*note));
    }
    return found;
}

} // namespace

std::vector<NoteHits> searchEach(const SearchTerms& terms, std::span<const Note* const> notes) {
    const std::size_t cores = std::max(1U, std::thread::hardware_concurrency());
    const std::size_t parts = std::clamp<std::size_t>(notes.size() / notesPerThread, 1, cores);
    std::vector<std::future<std::vector<NoteHits>>> others;
    const auto part = [&](std::size_t k) {
        const std::size_t begin = notes.size() * k / parts;
        return notes.subspan(begin, notes.size() * (k + 1) / parts - begin);
    };
    for (std::size_t k = 1; k < parts; ++k) {
        others.push_back(
            std::async(std::launch::async, [&terms, share = part(k)] { return searchPart(terms, share); }));
    }
    std::vector<NoteHits> found = searchPart(terms, part(0));
    for (auto& other : others) {
        std::ranges::move(other.get(), std::back_inserter(found));
    }
    return found;
}

} // namespace varnic
