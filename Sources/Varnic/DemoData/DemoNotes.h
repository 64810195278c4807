#pragma once

#include "VarnicCore/Models/Date.h"
#include "VarnicCore/Models/Note.h"
#include "VarnicCore/Models/Region.h"

#include <chrono>
#include <vector>

/// The parts of the demonstration's library.
namespace varnic::DemoData {

/// Moments and words of the user who the library is for.
struct Days {
    Date now;
    Region region;

    /// A moment of the day so many days ago.
    [[nodiscard]] Date ago(int days, std::chrono::minutes time) const;
};

std::vector<Note> calls(const Days& days);
std::vector<Note> writtenNotes(const Days& days);

} // namespace varnic::DemoData
