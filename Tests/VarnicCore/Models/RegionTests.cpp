#include "VarnicCore/Models/Region.h"
#include "VarnicCore/Models/RelativeDate.h"

#include <gtest/gtest.h>
#include <unicode/calendar.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace varnic {
namespace {

struct DayStart {
    std::string zone;
    std::string moment;
    std::string start;
};

TEST(Region, startOfDay_isTheFirstMomentOfTheDay) {
    const std::vector<DayStart> cases{
        {"UTC", "2026-03-14T09:26:53.589Z", "2026-03-14T00:00:00.000Z"},
        {"Asia/Kolkata", "2026-03-14T20:00:00Z", "2026-03-14T18:30:00.000Z"},
        // Summer time begins at midnight in Cairo, so that 24 April 2026 begins at one o'clock.
        {"Africa/Cairo", "2026-04-24T10:00:00Z", "2026-04-23T22:00:00.000Z"},
        {"Africa/Cairo", "2026-04-25T10:00:00Z", "2026-04-24T21:00:00.000Z"},
        // The clock goes from 01:00 back to 00:00 in Havana: midnight comes twice, and the day begins with the first.
        {"America/Havana", "2025-11-02T12:00:00Z", "2025-11-02T04:00:00.000Z"},
        {"America/New_York", "2026-03-08T12:00:00Z", "2026-03-08T05:00:00.000Z"},
        // Kazakhstan and Paraguay changed their offsets for good in 2024.
        {"Asia/Almaty", "2026-01-10T12:00:00Z", "2026-01-09T19:00:00.000Z"},
        {"America/Asuncion", "2026-07-10T12:00:00Z", "2026-07-10T03:00:00.000Z"},
        {"Nowhere/Land", "2026-03-14T09:26:53Z", "2026-03-14T00:00:00.000Z"},
    };
    for (const auto& [zone, moment, start] : cases) {
        const Region region{"en_US", zone};
        EXPECT_EQ(formatDate(region.startOfDay(region.day(parseDate(moment)))), start) << zone << " " << moment;
    }
    EXPECT_FALSE((Region{"en_US", "Nowhere/Land"}.hasKnownZone()));
    EXPECT_TRUE((Region{"en_US", "Europe/Berlin"}.hasKnownZone()));
}

TEST(Region, format_usesTheZonesWallClockAndTheLocalesWords) {
    const Date date = parseDate("2025-06-03T22:30:00Z");
    EXPECT_EQ((Region{"en_US", "UTC"}.format(date, "EEE d MMM")), "Tue 3 Jun");
    EXPECT_EQ((Region{"en_US", "Europe/Berlin"}.format(date, "EEEE d MMMM yyyy, HH:mm")),
              "Wednesday 4 June 2025, 00:30");
    EXPECT_EQ((Region{"de_DE", "UTC"}.format(date, "EEE d MMM")), "Di. 3 Juni");
}

struct English {
    const char* locale;
    const char* date;
    const char* distance;
    UCalendarDaysOfWeek weekBegins;
};

TEST(Region, inEnglish_keepsTheUsersDigitsAndWeek) {
    const Date date = parseDate("2025-06-03T22:30:00Z");
    const Date now = date + std::chrono::minutes(29);
    for (const English& user : {
             English{"de_DE.UTF-8", "Tue 3 Jun 2025, 22:30", "29 minutes ago", UCAL_MONDAY},
             English{"de", "Tue 3 Jun 2025, 22:30", "29 minutes ago", UCAL_MONDAY},
             English{"en_US", "Tue 3 Jun 2025, 22:30", "29 minutes ago", UCAL_SUNDAY},
             English{"th_TH", "Tue 3 Jun 2025, 22:30", "29 minutes ago", UCAL_SUNDAY},
             English{"ar_EG", "Tue ٣ Jun ٢٠٢٥, ٢٢:٣٠", "٢٩ minutes ago", UCAL_SATURDAY},
             English{"fa_IR", "Tue ۳ Jun ۲۰۲۵, ۲۲:۳۰", "۲۹ minutes ago", UCAL_SATURDAY},
             English{"C", "Tue 3 Jun 2025, 22:30", "29 minutes ago", UCAL_SUNDAY},
         }) {
        const Region region{.locale = user.locale, .dateLocale = Region::inEnglish(user.locale)};
        EXPECT_EQ(region.format(date, "EEE d MMM yyyy, HH:mm"), user.date) << user.locale;
        EXPECT_EQ(relativeDate(date, now, region), user.distance) << user.locale;
        UErrorCode status = U_ZERO_ERROR;
        const std::unique_ptr<icu::Calendar> calendar(
            icu::Calendar::createInstance(icu::Locale(region.dateLocale.c_str()), status));
        EXPECT_EQ(calendar->getFirstDayOfWeek(status), user.weekBegins) << user.locale;
    }
}

} // namespace
} // namespace varnic
