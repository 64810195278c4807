#include "Varnic/Views/Study/DueDay.h"

#include <chrono>

namespace varnic {

std::string dueDay(Date due, Date now, const Region& region) {
    const auto day = region.day(due);
    const auto today = region.day(now);
    if (day == today) {
        return "at " + region.format(due, "HH:mm");
    }
    if (day == today + std::chrono::days(1)) {
        return "tomorrow";
    }
    const bool isThisYear = std::chrono::year_month_day(day).year() == std::chrono::year_month_day(today).year();
    return "on " + region.format(due, isThisYear ? "EEEE d MMMM" : "EEEE d MMMM yyyy");
}

} // namespace varnic
