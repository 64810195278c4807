#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace varnic {

/// A moment in time, in whole milliseconds of UTC: the precision in which the library stores it.
using Date = std::chrono::sys_time<std::chrono::milliseconds>;

/// The system clock's time.
Date currentDate();

/// The form in which dates are stored: "2026-03-14T09:26:53.589Z". Years 0000 to 9999.
std::string formatDate(Date date);

/// Reads an ISO 8601 internet date and time (RFC 3339): fraction of any length (cut to milliseconds) or none, zone "Z"
/// or an offset. Throws std::invalid_argument with "Bad date " and the text for anything else.
Date parseDate(std::string_view text);

} // namespace varnic
