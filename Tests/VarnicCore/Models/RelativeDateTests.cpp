#include "VarnicCore/Models/RelativeDate.h"

#include <gtest/gtest.h>

namespace varnic {
namespace {

struct Case {
    const char* date;
    const char* text;
};

TEST(RelativeDate, names_the_largest_unit_that_fits) {
    const Date now = parseDate("2026-03-10T09:00:00Z"); // a Tuesday
    const Region region{.locale = "en_GB", .timeZone = "Europe/Berlin"};
    for (const auto& [date, text] : {
             Case{"2026-03-10T09:00:00Z", "now"},
             Case{"2026-03-10T08:59:01Z", "now"},
             Case{"2026-03-10T08:59:00Z", "1 minute ago"},
             Case{"2026-03-10T08:00:01Z", "59 minutes ago"},
             Case{"2026-03-10T08:00:00Z", "1 hour ago"},
             Case{"2026-03-09T09:00:01Z", "23 hours ago"},
             Case{"2026-03-09T09:00:00Z", "yesterday"},
             Case{"2026-03-08T22:59:00Z", "2 days ago"}, // 23:59 in Berlin on the 8th
             Case{"2026-03-08T23:01:00Z", "yesterday"},  // 00:01 in Berlin on the 9th
             Case{"2026-03-04T09:00:00Z", "6 days ago"},
             Case{"2026-03-03T09:00:00Z", "last week"},
             Case{"2026-02-08T09:00:00Z", "4 weeks ago"},
             Case{"2026-02-07T09:00:00Z", "last month"},
             Case{"2025-03-01T09:00:00Z", "last year"},
             Case{"2026-03-11T10:00:00Z", "tomorrow"},
             Case{"2026-03-10T11:00:00Z", "in 2 hours"},
             Case{"2026-03-17T10:00:00Z", "next week"},
         }) {
        EXPECT_EQ(relativeDate(parseDate(date), now, region), text) << date;
    }
}

} // namespace
} // namespace varnic
