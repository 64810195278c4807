#pragma once

#include "VarnicCore/Models/Date.h"
#include "VarnicCore/Models/Region.h"

#include <string>

namespace varnic {

/// When something that is still to come is due, for the end of a sentence: "at 14:05", "tomorrow", "on Friday 13
/// March", "on Friday 1 January 2027".
std::string dueDay(Date due, Date now, const Region& region);

} // namespace varnic
