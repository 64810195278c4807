#include "VarnicCLI/Command.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCLI/UserLibrary.h"
#include "VarnicCore/Library/NoteJson.h"
#include "VarnicCore/Library/RepeatedSearch.h"
#include "VarnicCore/Library/ResultJson.h"
#include "VarnicCore/Models/Clock.h"
#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace varnic::cli {

namespace {

/// Hits printed for one note; how many more there are is told.
constexpr std::size_t hitsShown = 5;

/// The snippet with its highlights marked.
std::string marked(const SearchHit& hit) {
    const std::vector<std::size_t> starts = Unicode::characterStarts(hit.snippet);
    const auto byteOf = [&](std::size_t character) {
        return character < starts.size() ? starts[character] : hit.snippet.size();
    };
    std::string text;
    std::size_t done = 0;
    for (const Highlight& highlight : hit.highlights) {
        // Highlights of different terms may overlap.
        const std::size_t begin = std::max(done, byteOf(highlight.begin));
        const std::size_t end = std::max(begin, byteOf(highlight.end));
        text += hit.snippet.substr(done, begin - done) + Terminal::bold(hit.snippet.substr(begin, end - begin));
        done = end;
    }
    return text + hit.snippet.substr(done);
}

void print(const FoundNote& one, const SearchTerms& terms) {
    Terminal::print("{}  {}\n", Terminal::faint(shortId(*one.note)), Terminal::bold(one.note->displayTitle()));
    NoteHits hits(*one.note, terms);
    for (std::size_t rank = 0; rank < std::min(hits.size(), hitsShown); ++rank) {
        const SearchHit hit = hits.hit(rank);
        const std::string place = hit.time ? Clock::stamp(*hit.time) : std::string(rawValue(hit.field));
        Terminal::print("    {} {}\n", Terminal::faint(fmt::format("{:>9}", place)), marked(hit));
    }
    if (hits.size() > hitsShown) {
        Terminal::print("    {}\n", Terminal::faint(fmt::format("{} more", hits.size() - hitsShown)));
    }
}

} // namespace

ExitCode search(const Arguments& arguments) {
    if (arguments.words().empty()) {
        throw UsageError("say what to search for");
    }
    LibraryStore store(libraryFolder());
    const std::string query = fmt::format("{}", fmt::join(arguments.words(), " "));
    if (arguments.has("json")) {
        const std::vector<Note> notes = loadNotes(store);
        Terminal::printJson(jsonText(ResultJson::matches(NoteSearch::search(query, notes))));
        return ExitCode::success;
    }
    const SharedNotes notes = loadNotes(store);
    const auto found = RepeatedSearch().search(query, notes.all(), {}, nullptr);
    for (const FoundNote& one : found->notes) {
        print(one, found->terms);
    }
    if (found->notes.empty()) {
        Terminal::print(stderr, "Nothing was found.\n");
    }
    return ExitCode::success;
}

} // namespace varnic::cli
