// Searches a note of arbitrary text for an arbitrary query. The input is the query, a zero byte and the text.

#include "VarnicCore/Library/NoteSearch.h"
#include "VarnicCore/Text/TextKit.h"
#include "VarnicCore/Text/Unicode.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

using namespace varnic;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

bool holdsATerm(std::string_view query, std::string_view text) {
    const std::string foldedQuery = TextKit::fold(query);
    const std::string foldedText = TextKit::fold(text);
    for (const std::string_view term : Unicode::split(foldedQuery, Unicode::isSpace)) {
        if (foldedText.find(term) != std::string::npos) {
            return true;
        }
    }
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string_view query = input.substr(0, input.find('\0'));
    const std::string_view text = input.substr(std::min(input.size(), query.size() + 1));

    // The paragraph is the place that counts; the title only keeps a name from being made up.
    Note note(Date{});
    note.title = ".";
    note.blocks.front().text = text;
    const auto matches = NoteSearch::search(query, std::span(&note, 1));
    std::size_t inBody = 0;
    for (const NoteMatch& match : matches) {
        for (const SearchHit& hit : match.hits) {
            inBody += hit.field == SearchHit::Field::body ? 1 : 0;
            const std::size_t characters = Unicode::characterCount(hit.snippet);
            require(characters <= 182);
            for (const Highlight& highlight : hit.highlights) {
                require(highlight.begin < highlight.end && highlight.end <= characters);
            }
        }
    }
    require(inBody == (holdsATerm(query, text) ? 1U : 0U));
    return 0;
}
