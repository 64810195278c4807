#pragma once

#include "VarnicCore/Models/Date.h"
#include "VarnicCore/Models/Region.h"

#include <string>

namespace varnic {

/// When something was or will be, as seen from `now`, in the largest unit that fits and by its name where there is one:
/// "now" (within a minute), "5 minutes ago", "yesterday", "next week". Less than a day is given in hours, more in days
/// of the region's calendar. Throws std::runtime_error for a language without such words.
std::string relativeDate(Date date, Date now, const Region& region);

} // namespace varnic
