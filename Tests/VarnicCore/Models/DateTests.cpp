#include "VarnicCore/Models/Date.h"

#include "VarnicCore/Models/FixedClock.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace varnic {
namespace {

TEST(Date, parse_formsOfTheSameAndOtherMoments) {
    const std::vector<std::pair<std::string, std::string>> forms{
        {"2026-03-14T09:26:53.589Z", "2026-03-14T09:26:53.589Z"},
        {"2026-03-14T09:26:53Z", "2026-03-14T09:26:53.000Z"},
        {"2026-03-14T09:26:53.5Z", "2026-03-14T09:26:53.500Z"},
        {"2026-03-14T09:26:53.5899999Z", "2026-03-14T09:26:53.589Z"},
        {"2026-03-14T09:26:53+01:00", "2026-03-14T08:26:53.000Z"},
        {"2026-03-14T09:26:53-0530", "2026-03-14T14:56:53.000Z"},
        {"2024-02-29T23:59:60Z", "2024-03-01T00:00:00.000Z"},
        {"1969-12-31T23:59:59.999Z", "1969-12-31T23:59:59.999Z"},
    };
    for (const auto& [text, stored] : forms) {
        EXPECT_EQ(formatDate(parseDate(text)), stored) << text;
    }
}

TEST(Date, fixedClock_standsStillForAllAndIsGoneWithItsEnd) {
    const Date moment = parseDate("2001-02-03T04:05:06Z");
    {
        const FixedClock clock(moment);
        EXPECT_EQ(currentDate(), moment);
    }
    EXPECT_GT(currentDate(), moment);
}

TEST(Date, parse_anythingElseNamesTheText) {
    for (const std::string text :
         {"yesterday", "", "2026-03-14", "2026-13-01T00:00:00Z", "2025-02-29T00:00:00Z", "2026-03-14T24:00:00Z",
          "2026-03-14T09:26:53", "2026-03-14T09:26:53.Z", "2026-03-14T09:26:53Zx", "2026-03-14 09:26:53Z"}) {
        try {
            parseDate(text);
            FAIL() << text;
        } catch (const std::invalid_argument& error) {
            EXPECT_EQ(error.what(), "Bad date " + text);
        }
    }
}

} // namespace
} // namespace varnic
