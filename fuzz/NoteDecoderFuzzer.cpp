// Any bytes either make a note or one DecodeError, and a note that was read is stored and read again as it was.

#include "VarnicCore/Library/LibraryStore.h"
#include "VarnicCore/Library/NoteJson.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string_view>

namespace {

std::optional<varnic::Note> decoded(std::string_view bytes) {
    try {
        return varnic::decodeNote(bytes, varnic::Date());
    } catch (const varnic::DecodeError&) {
        return std::nullopt;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto note = decoded({reinterpret_cast<const char*>(data), size});
    if (note && decoded(varnic::LibraryStore::encoded(*note)) != note) {
        std::abort();
    }
    return 0;
}
