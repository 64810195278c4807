#include "VarnicCore/Library/SpareNotes.h"

#include "VarnicCore/Library/AtomicWrite.h"
#include "VarnicCore/Library/Folders.h"
#include "VarnicCore/Library/LibraryStore.h"
#include "VarnicCore/Library/NoteFileReader.h"

#include <fmt/format.h>

#include <charconv>
#include <exception>
#include <optional>
#include <string>
#include <system_error>

namespace varnic {

namespace fs = std::filesystem;

namespace {

constexpr int hexadecimal = 16;

/// "<UUID>.<base>.json", so that a file is whole by itself.
std::string nameOf(const SpareNote& spare) {
    return fmt::format("{}.{:016x}.json", spare.note.id.text(), spare.base);
}

std::optional<std::uint64_t> baseIn(const fs::path& file) {
    const std::string digits = file.stem().extension().string();
    std::uint64_t base = 0;
    const char* const end = digits.data() + digits.size();
    const bool isWhole = digits.size() > 1 && std::from_chars(digits.data() + 1, end, base, hexadecimal).ptr == end;
    return isWhole ? std::optional(base) : std::nullopt;
}

} // namespace

bool SpareNotes::keep(const SpareNote& spare) const {
    const fs::path file = folder_ / nameOf(spare);
    try {
        Folders::make(folder_);
        AtomicWrite::replace(file, LibraryStore::encoded(spare.note));
    } catch (const std::exception&) {
        return false;
    }
    removeAllBut(file, spare.note.id);
    return true;
}

void SpareNotes::drop(const Uuid& id) const {
    removeAllBut({}, id);
    std::error_code ignored;
    fs::remove(folder_, ignored); // which fails while it holds others
}

void SpareNotes::removeAllBut(const fs::path& kept, const Uuid& id) const {
    for (const fs::path& file : Folders::entries(folder_)) {
        if (file != kept && file.filename().string().starts_with(id.text())) {
            Folders::removeAll(file);
        }
    }
}

std::vector<SpareNote> SpareNotes::all(Date now) const {
    std::vector<SpareNote> notes;
    NoteFileReader reader;
    for (const fs::path& file : Folders::entries(folder_)) {
        try {
            if (const auto base = baseIn(file)) {
                notes.push_back({reader.read(file, now), *base});
            }
        } catch (const std::exception&) { // NOLINT(bugprone-empty-catch)
            // None of ours, which are written whole or not at all.
        }
    }
    return notes;
}

} // namespace varnic
