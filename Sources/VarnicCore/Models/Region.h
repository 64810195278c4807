#pragma once

#include "VarnicCore/Models/Date.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace varnic {

/// Where and in which language the user lives: what turns moments into days and days into words. The calendar is the
/// Gregorian one. Zone rules are the system's (the tz database that the system keeps current), through GLib.
struct Region {
    /// ICU locale, such as "en_GB": how titles are sorted and, without a `dateLocale`, what dates are written like.
    std::string locale = "en_US";
    /// IANA zone name, such as "Europe/Berlin"; empty for the system's own zone.
    std::string timeZone = "UTC";
    /// ICU locale of the words and digits of dates; empty where that is `locale` too.
    std::string dateLocale;

    /// The locale and zone of this user on this system. Dates stand in sentences of the program and so are in its
    /// language.
    static Region user();

    /// ICU locale of the program's language, English, for users of a locale: with the digits and the first day of the
    /// week that they are used to.
    static std::string inEnglish(const std::string& locale);

    /// Whether the system knows the zone. The functions below treat an unknown zone as UTC.
    [[nodiscard]] bool hasKnownZone() const;

    /// The calendar day that holds the moment.
    [[nodiscard]] std::chrono::local_days day(Date date) const;

    /// The first moment of a day: midnight, or what follows it where the clock skips midnight.
    [[nodiscard]] Date startOfDay(std::chrono::local_days day) const;

    /// The moment that ISO 8601 writes so, "2026-03-14", "2026-03-14 09:26" and "2026-03-14T09:26:53+01:00" among
    /// others: in this zone where none is named, the first moment of a day without a time. Nothing for anything else.
    [[nodiscard]] std::optional<Date> moment(std::string_view text) const;

    /// The locale that dates are written in.
    [[nodiscard]] const std::string& localeOfDates() const { return dateLocale.empty() ? locale : dateLocale; }

    /// The moment in the pattern (Unicode's date field symbols, such as "EEE d MMM") and the words of `localeOfDates`.
    [[nodiscard]] std::string format(Date date, std::string_view pattern) const;

    bool operator==(const Region&) const = default;
};

} // namespace varnic
