#include "VarnicCLI/Command.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCLI/UserLibrary.h"
#include "VarnicCore/Library/NoteJson.h"
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

void print(const NoteMatch& match) {
    Terminal::print("{}  {}\n", Terminal::faint(shortId(*match.note)), Terminal::bold(match.note->displayTitle()));
    for (std::size_t i = 0; i < std::min(match.hits.size(), hitsShown); ++i) {
        const SearchHit& hit = match.hits[i];
        const std::string place = hit.time ? Clock::stamp(*hit.time) : std::string(rawValue(hit.field));
        Terminal::print("    {} {}\n", Terminal::faint(fmt::format("{:>9}", place)), marked(hit));
    }
    if (match.hits.size() > hitsShown) {
        Terminal::print("    {}\n", Terminal::faint(fmt::format("{} more", match.hits.size() - hitsShown)));
    }
}

} // namespace

ExitCode search(const Arguments& arguments) {
    if (arguments.words().empty()) {
        throw UsageError("say what to search for");
    }
    LibraryStore store(libraryFolder());
    const std::vector<Note> notes = loadNotes(store);
    const auto matches = NoteSearch::search(fmt::format("{}", fmt::join(arguments.words(), " ")), notes);
    if (arguments.has("json")) {
        Terminal::printJson(jsonText(ResultJson::matches(matches)));
        return ExitCode::success;
    }
    for (const NoteMatch& match : matches) {
        print(match);
    }
    if (matches.empty()) {
        Terminal::print(stderr, "Nothing was found.\n");
    }
    return ExitCode::success;
}

} // namespace varnic::cli
