#include "VarnicCore/Models/Clock.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace varnic::Clock {

namespace {

/// A note file may hold any number; seconds beyond this don't fit the whole numbers in which they are counted here.
constexpr double longest = 9e18;

} // namespace

std::string stamp(double seconds) {
    const auto whole = static_cast<long long>(std::floor(std::clamp(seconds, 0.0, longest)));
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
    const long long minutes = std::llround(std::min(seconds, longest) / 60);
    if (minutes < 60) {
        return fmt::format("{} min", minutes);
    }
    if (minutes % 60 == 0) {
        return fmt::format("{} hr", minutes / 60);
    }
    return fmt::format("{} hr {} min", minutes / 60, minutes % 60);
}

} // namespace varnic::Clock
