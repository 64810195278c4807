#include "VarnicCore/Export/Exporter.h"
#include "VarnicCore/Export/MarkdownFile.h"
#include "VarnicCore/Export/MarkdownImport.h"
#include "VarnicCore/Export/MarkdownSurvivors.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

using namespace varnic;

namespace {

bool areSame(const std::vector<Block>& a, const std::vector<Block>& b) {
    return std::ranges::equal(a, b, [](const Block& x, const Block& y) {
        return x.kind == y.kind && x.text == y.text && x.back == y.back && x.done == y.done && x.rows == y.rows;
    });
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
    return 0;
}
