#pragma once

#include "VarnicCore/Models/Note.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace varnic {

/// A note that the library did not take.
struct SpareNote {
    Note note;
    /// The fingerprint of the stored version that it was made from; 0 where there was none.
    std::uint64_t base = 0;
    /// Where it is kept, for one that is.
    std::filesystem::path file;
};

/// Notes that the library does not take at the moment, a file each in a folder that lies elsewhere, so that a program
/// that has to end does not take them with it. There is no folder while there are none. What an earlier run has left is
/// not known to the notes of this one, and is replaced and dropped by itself only. One thread at a time.
class SpareNotes {
public:
    explicit SpareNotes(std::filesystem::path folder) : folder_(std::move(folder)) {}

    /// Keeps the note in place of this run's older version; false where that fails too.
    [[nodiscard]] bool keep(const SpareNote& spare) const;

    /// Removes this run's version of the note: the library has it now.
    void drop(const Uuid& id) const;

    /// Removes one of `all`: the library has it now.
    void drop(const SpareNote& spare) const;

    /// Removes all versions of a note that nobody wants any more.
    void dropAll(const Uuid& id) const;

    /// Those that can be read, in no order.
    [[nodiscard]] std::vector<SpareNote> all(Date now) const;

private:
    [[nodiscard]] std::string ownName(const Uuid& id) const;
    void removeAllBut(const std::filesystem::path& kept, const std::string& beginning) const;

    std::filesystem::path folder_;
    Uuid run_ = Uuid::random();
};

} // namespace varnic
