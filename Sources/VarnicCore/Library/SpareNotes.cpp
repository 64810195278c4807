#include "VarnicCore/Library/SpareNotes.h"

#include "VarnicCore/Files/AtomicWrite.h"
#include "VarnicCore/Files/Folders.h"
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

/// The base in a name of the form "<UUID>.<run>.<base>.json": a file needs no index beside it.
std::optional<std::uint64_t> baseIn(const fs::path& file) {
    const std::string digits = file.stem().extension().string();
    std::uint64_t base = 0;
    const char* const end = digits.data() + digits.size();
    const bool isWhole = digits.size() > 1 && std::from_chars(digits.data() + 1, end, base, hexadecimal).ptr == end;
    return isWhole ? std::optional(base) : std::nullopt;
}

} // namespace

/// What the names of this run's versions begin with.
std::string SpareNotes::ownName(const Uuid& id) const {
    return fmt::format("{}.{}.", id.text(), run_.text());
}

bool SpareNotes::keep(const SpareNote& spare) const {
    const std::string name = ownName(spare.note.id);
    const fs::path file = folder_ / fmt::format("{}{:016x}.json", name, spare.base);
    try {
        Folders::make(folder_);
        AtomicWrite::replace(file, LibraryStore::encoded(spare.note));
    } catch (const std::exception&) {
        return false;
    }
    removeAllBut(file, name);
    return true;
}

void SpareNotes::drop(const Uuid& id) const {
    removeAllBut({}, ownName(id));
}

void SpareNotes::drop(const SpareNote& spare) const {
    removeAllBut({}, spare.file.filename().string());
}

void SpareNotes::dropAll(const Uuid& id) const {
    removeAllBut({}, id.text());
}

/// Removes the files whose names begin so except `kept`, and the folder when it holds no others.
void SpareNotes::removeAllBut(const fs::path& kept, const std::string& beginning) const {
    for (const fs::path& file : Folders::entries(folder_)) {
        if (file != kept && file.filename().string().starts_with(beginning)) {
            Folders::removeAll(file);
        }
    }
    std::error_code ignored;
    fs::remove(folder_, ignored); // which fails while it holds others
}

std::vector<SpareNote> SpareNotes::all(Date now) const {
    std::vector<SpareNote> notes;
    NoteFileReader reader;
    for (const fs::path& file : Folders::entries(folder_)) {
        try {
            if (const auto base = baseIn(file)) {
                notes.push_back({reader.read(file, now), *base, file});
            }
        } catch (const std::exception&) {
            // Not one of ours: those are written whole or not at all.
        }
    }
    return notes;
}

} // namespace varnic
