#include "VarnicCore/Models/Clock.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace varnic::Clock {

std::string stamp(double seconds) {
    const auto whole = static_cast<long long>(std::floor(std::max(seconds, 0.0)));
    const auto hours = whole / 3600;
    const auto minutes = whole / 60 % 60;
    if (hours > 0) {
        return fmt::format("{}:{:02}:{:02}", hours, minutes, whole % 60);
    }
    return fmt::format("{}:{:02}", minutes, whole % 60);
}

std::string length(double seconds) {
    if (seconds < 60) {
        return "under a minute";
    }
    const long long minutes = std::llround(seconds / 60);
    if (minutes < 60) {
        return fmt::format("{} min", minutes);
    }
    if (minutes % 60 == 0) {
        return fmt::format("{} hr", minutes / 60);
    }
    return fmt::format("{} hr {} min", minutes / 60, minutes % 60);
}

} // namespace varnic::Clock
