#pragma once

#include "VarnicCore/Models/Note.h"

#include <cstdint>
#include <filesystem>
#include <utility>
#include <vector>

namespace varnic {

/// A note that the library did not take.
struct SpareNote {
    Note note;
    /// The fingerprint of the stored version that it was made from; 0 where there was none.
    std::uint64_t base = 0;
};

/// Notes that the library does not take at the moment, a file each in a folder that lies elsewhere, so that a program
/// that has to end does not take them with it. There is no folder while there are none. One thread at a time.
class SpareNotes {
public:
    explicit SpareNotes(std::filesystem::path folder) : folder_(std::move(folder)) {}

    /// Keeps the note in place of an older version; false where that fails too.
    [[nodiscard]] bool keep(const SpareNote& spare) const;

    /// The note is where it belongs.
    void drop(const Uuid& id) const;

    /// Those that can be read, in no order.
    [[nodiscard]] std::vector<SpareNote> all(Date now) const;

private:
    void removeAllBut(const std::filesystem::path& kept, const Uuid& id) const;

    std::filesystem::path folder_;
};

} // namespace varnic
