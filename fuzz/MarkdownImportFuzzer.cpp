#include "MarkdownSurvivors.h"
#include "VarnicCore/Export/Exporter.h"
#include "VarnicCore/Export/MarkdownFile.h"
#include "VarnicCore/Export/MarkdownImport.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

using namespace varnic;

namespace {

bool areSame(const std::vector<Block>& a, const std::vector<Block>& b) {
    return std::ranges::equal(a, b, [](const Block& x, const Block& y) {
        return x.kind == y.kind && x.text == y.text && x.back == y.back && x.done == y.done && x.rows == y.rows;
    });
}

/// Whether a to-do loses of its text exactly what the tag's pattern matches.
bool losesItsTagAlone(const std::string& text) {
    constexpr std::size_t most = 1000; // a longer one overflows the stack of ICU's patterns
    if (text.empty() || text.size() > most || !MarkdownSurvivors::fitsOneLine(text)) {
        return true;
    }
    std::string expected = MarkdownSurvivors::withoutTag(text);
    expected.erase(0, expected.starts_with('\\') ? 1 : 0);
    // Malformed bytes are told from their replacement only here.
    return Unicode::utf16(MarkdownImport::blocks("- [ ] " + text).blocks.at(0).text) == Unicode::utf16(expected);
}

} // namespace

/// Reads any bytes; what was read and can be written as Markdown comes back the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static_cast<void>(MarkdownFile::read({reinterpret_cast<const char*>(data), size}, Region{}));
    auto document = MarkdownImport::blocks({reinterpret_cast<const char*>(data), size});
    std::erase_if(document.blocks, [](const Block& block) { return !MarkdownSurvivors::survives(block); });
    const Note note(Uuid::random(), document.title.value_or(""), Date{}, document.blocks);
    const auto again = MarkdownImport::blocks(Exporter::markdown(note, {}, Region{}));
    if (!areSame(again.blocks, document.blocks)) {
        std::abort();
    }
    if (!losesItsTagAlone({reinterpret_cast<const char*>(data), size})) {
        std::abort();
    }
    return 0;
}
