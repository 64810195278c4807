#pragma once

#include "VarnicCore/Models/Date.h"
#include "VarnicCore/Models/Region.h"

#include <optional>
#include <string>
#include <string_view>

/// Deadlines as they are spoken, in English. Neither function guesses: what it does not know gives nothing. Any thread.
namespace varnic::DueDate {

/// The deadline in a clause in display form ("Friday", "end of the week"). Of several the more telling kind wins, not
/// the one said first.
std::optional<std::string> phrase(std::string_view text);

/// The phrase with its names of days and months capitalised, and one space between its words.
std::string pretty(std::string_view phrase);

/// The start of the day that the phrase means when it is said at `from`. Nothing past the year 9999.
std::optional<Date> resolve(std::string_view phrase, Date from, const Region& region);

} // namespace varnic::DueDate
