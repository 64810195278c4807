#include "Varnic/Views/Study/DueDay.h"

#include <gtest/gtest.h>

namespace varnic {
namespace {

struct Case {
    const char* due;
    const char* text;
};

TEST(DueDay, names_the_day_as_it_is_seen_from_today) {
    const Date now = parseDate("2026-12-30T20:00:00Z"); // 21:00 in Berlin
    const Region region{.locale = "en_GB", .timeZone = "Europe/Berlin"};
    for (const auto& [due, text] : {
             Case{"2026-12-30T20:10:00Z", "at 21:10"},
             Case{"2026-12-30T23:00:00Z", "tomorrow"},
             Case{"2026-12-31T22:59:59Z", "tomorrow"},
             Case{"2026-12-31T23:00:00Z", "on Friday 1 January 2027"},
         }) {
        EXPECT_EQ(dueDay(parseDate(due), now, region), text) << due;
    }
    EXPECT_EQ(dueDay(parseDate("2026-03-13T00:00:00Z"), parseDate("2026-03-10T09:00:00Z"), region),
              "on Friday 13 March");
}

} // namespace
} // namespace varnic
