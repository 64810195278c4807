#include "VarnicCore/Models/Region.h"

#include <glib.h>
#include <unicode/locid.h>
#include <unicode/numsys.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <algorithm>
#include <memory>
#include <stdexcept>

namespace varnic {

namespace {

using namespace std::chrono;

using Zone = std::unique_ptr<GTimeZone, decltype(&g_time_zone_unref)>;

Zone findZone(const std::string& name) {
    GTimeZone* zone = name.empty() ? g_time_zone_new_local() : g_time_zone_new_identifier(name.c_str());
    return {zone, g_time_zone_unref};
}

Zone zoneOrUtc(const std::string& name) {
    Zone zone = findZone(name);
    return zone ? std::move(zone) : Zone(g_time_zone_new_utc(), g_time_zone_unref);
}

seconds offsetAt(const Zone& zone, sys_seconds moment) {
    const gint interval =
        g_time_zone_find_interval(zone.get(), G_TIME_TYPE_UNIVERSAL, moment.time_since_epoch().count());
    return seconds(g_time_zone_get_offset(zone.get(), interval));
}

} // namespace

Region Region::user() {
    const std::string locale = icu::Locale::getDefault().getName();
    return {.locale = locale, .timeZone = "", .dateLocale = inEnglish(locale)};
}

std::string Region::inEnglish(const std::string& locale) {
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale whole(locale.c_str());
    const std::unique_ptr<icu::NumberingSystem> digits(icu::NumberingSystem::createInstance(whole, status));
    whole.addLikelySubtags(status); // a language alone has a region too
    icu::Locale english("en", whole.getCountry());
    english.setKeywordValue("calendar", "gregorian", status);
    if (digits) {
        english.setKeywordValue("numbers", digits->getName(), status);
    }
    return U_SUCCESS(status) != 0 ? english.getName() : "en";
}

bool Region::hasKnownZone() const {
    return findZone(timeZone) != nullptr;
}

local_days Region::day(Date date) const {
    const auto moment = floor<seconds>(date);
    return floor<days>(local_seconds(moment.time_since_epoch() + offsetAt(zoneOrUtc(timeZone), moment)));
}

Date Region::startOfDay(local_days day) const {
    const Zone zone = zoneOrUtc(timeZone);
    const local_seconds midnight = day;
    // No zone is further than a day from UTC, and no two changes of a zone's offset fall within two days of each other
    // in a way that matters here: the offsets a day before and a day after are those on the two sides of a change.
    const sys_seconds utcMidnight(midnight.time_since_epoch());
    const seconds before = offsetAt(zone, utcMidnight - days(1));
    const seconds after = offsetAt(zone, utcMidnight + days(1));
    for (const seconds offset : {std::max(before, after), std::min(before, after)}) {
        const sys_seconds moment = utcMidnight - offset; // the larger offset first: the earlier of two midnights
        if (offsetAt(zone, moment) == offset) {
            return moment;
        }
    }
    // Midnight is skipped: the day begins at the change, which lies where the old offset's midnight would have been
    // or up to a day after it.
    sys_seconds low = utcMidnight - std::max(before, after);
    sys_seconds high = utcMidnight + days(1);
    while (high - low > seconds(1)) {
        const sys_seconds middle = low + (high - low) / 2;
        (offsetAt(zone, middle) == after ? high : low) = middle;
    }
    return high;
}

std::optional<Date> Region::moment(std::string_view text) const {
    constexpr std::size_t dayLength = 10;    // 2026-03-14
    constexpr std::size_t minuteLength = 16; // 2026-03-14 09:26
    if (text.size() == dayLength) {
        try {
            return startOfDay(local_days(floor<days>(parseDate(std::string(text) + "T00:00:00Z")).time_since_epoch()));
        } catch (const std::invalid_argument&) {
            return std::nullopt;
        }
    }
    const std::string whole = std::string(text) + (text.size() == minuteLength ? ":00" : "");
    const std::unique_ptr<GDateTime, decltype(&g_date_time_unref)> found(
        g_date_time_new_from_iso8601(whole.c_str(), zoneOrUtc(timeZone).get()), g_date_time_unref);
    return found ? std::optional<Date>(seconds(g_date_time_to_unix(found.get())) +
                                       milliseconds(g_date_time_get_microsecond(found.get()) / 1000) + Date())
                 : std::nullopt;
}

std::string Region::format(Date date, std::string_view pattern) const {
    const auto moment = floor<seconds>(date);
    const seconds offset = offsetAt(zoneOrUtc(timeZone), moment);
    UErrorCode status = U_ZERO_ERROR;
    icu::SimpleDateFormat formatter(icu::UnicodeString::fromUTF8(pattern), icu::Locale(localeOfDates().c_str()),
                                    status);
    if (U_FAILURE(status) != 0) {
        throw std::runtime_error("The dates of this language cannot be written: " + localeOfDates());
    }
    // The formatter is given the wall clock's reading as though it were UTC, so that the zone's rules come from one
    // source only.
    formatter.setTimeZone(*icu::TimeZone::getGMT());
    icu::UnicodeString text;
    formatter.format(static_cast<UDate>(duration_cast<milliseconds>(date.time_since_epoch() + offset).count()), text);
    std::string utf8;
    return text.toUTF8String(utf8);
}

} // namespace varnic
