#include "VarnicCore/Models/RelativeDate.h"

#include "VarnicCore/Text/Unicode.h"

#include <unicode/reldatefmt.h>

#include <chrono>
#include <cstdlib>
#include <stdexcept>

namespace varnic {

namespace {

using namespace std::chrono;

struct Distance {
    /// Below 0 in the past.
    std::int64_t count = 0;
    URelativeDateTimeUnit unit = UDAT_REL_UNIT_SECOND;
};

Distance distance(Date date, Date now, const Region& region) {
    const auto away = date - now;
    if (abs(away) < 1min) {
        return {};
    }
    if (abs(away) < 1h) {
        return {duration_cast<minutes>(away).count(), UDAT_REL_UNIT_MINUTE};
    }
    if (abs(away) < 24h) {
        return {duration_cast<hours>(away).count(), UDAT_REL_UNIT_HOUR};
    }
    const days apart = region.day(date) - region.day(now);
    if (abs(apart) < weeks(1)) {
        return {apart.count(), UDAT_REL_UNIT_DAY};
    }
    if (abs(apart) < months(1)) {
        return {duration_cast<weeks>(apart).count(), UDAT_REL_UNIT_WEEK};
    }
    if (abs(apart) < years(1)) {
        return {duration_cast<months>(apart).count(), UDAT_REL_UNIT_MONTH};
    }
    return {duration_cast<years>(apart).count(), UDAT_REL_UNIT_YEAR};
}

} // namespace

std::string relativeDate(Date date, Date now, const Region& region) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::RelativeDateTimeFormatter formatter(icu::Locale(region.localeOfDates().c_str()), status);
    const auto [count, unit] = distance(date, now, region);
    icu::UnicodeString text;
    formatter.format(static_cast<double>(count), unit, text, status);
    if (U_FAILURE(status) != 0) {
        throw std::runtime_error("Relative dates of this language cannot be written: " + region.localeOfDates());
    }
    return Unicode::utf8(text);
}

} // namespace varnic
