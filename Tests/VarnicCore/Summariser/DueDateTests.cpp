#include "VarnicCore/Summariser/DueDate.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace varnic {
namespace {

TEST(DueDate, phrase_isTheDeadlineInDisplayForm) {
    const std::vector<std::pair<std::string, std::optional<std::string>>> cases{
        {"Let's finish by EOD", "end of day"},
        {"by the end of week", "end of the week"},
        {"before the End of the Month", "end of the month"},
        {"end of the day or end of day", "end of day"},
        {"tomorrow or Friday", "tomorrow"},
        {"Friday or tomorrow", "tomorrow"},
        {"Friday, this afternoon", "this afternoon"},
        {"TOMORROW evening", "tomorrow evening"},
        {"tomorrow  evening", "tomorrow"},
        {"next FRIDAY please", "next Friday"},
        {"Mondays", std::nullopt},
        {"march 3rd", "March 3rd"},
        {"March 123", std::nullopt},
        {"on the 3rd of March", "3rd of March"},
        {"may 5", std::nullopt},
        {"by may 5", "May 5"},
        {"on May 5th", "May 5th"},
        {"we may 2 of them", std::nullopt},
        {"we may 2 of them on monday", "Monday"},
        {"we may 2 of them in two days", "in two days"},
        {"5 may", std::nullopt},
        {"in 3 weeks", "in 3 weeks"},
        {"within a day", "within a day"},
        {"in four days", std::nullopt},
        {"June ٣", "June ٣"},
        {"soon", std::nullopt},
        {"", std::nullopt},
        {"today\xFF", "today"},
        {"today\u0301", std::nullopt},
    };
    for (const auto& [text, phrase] : cases) {
        EXPECT_EQ(DueDate::phrase(text), phrase) << text;
    }
}

TEST(DueDate, pretty_capitalisesNamesOnly) {
    EXPECT_EQ(DueDate::pretty("next  friday"), "next Friday");
    EXPECT_EQ(DueDate::pretty(" 3rd of may, june "), "3rd of may, June");
    EXPECT_EQ(DueDate::pretty("Friday fridays"), "Friday fridays");
}

struct Case {
    std::string phrase;
    std::string from;
    /// The day, or nothing.
    std::string day;
};

void expectDays(const std::vector<Case>& cases) {
    for (const auto& [phrase, from, day] : cases) {
        const auto date = DueDate::resolve(phrase, parseDate(from + "T15:30:00Z"), Region{"en_US", "UTC"});
        EXPECT_EQ(date ? formatDate(*date) : "", day.empty() ? "" : day + "T00:00:00.000Z") << phrase << " on " << from;
    }
}

// 2026-03-05 is a Thursday.
TEST(DueDate, resolve_words) {
    expectDays({
        {"end of day", "2026-03-05", "2026-03-05"},
        {"End of day tomorrow", "2026-03-05", "2026-03-05"},
        {"tonight", "2026-03-05", "2026-03-05"},
        {"this morning", "2026-03-05", "2026-03-05"},
        {"tomorrow evening", "2026-02-28", "2026-03-01"},
        {"next week", "2026-03-05", "2026-03-09"},
        {"next week", "2026-03-09", "2026-03-16"},
        {"next week", "2026-03-08", "2026-03-09"},
        {"end of the week", "2026-03-05", "2026-03-06"},
        {"end of the week", "2026-03-06", "2026-03-06"},
        {"end of the week", "2026-03-07", "2026-03-13"},
        {"end of the month", "2026-01-31", "2026-01-31"},
        {"end of the month", "2024-02-01", "2024-02-29"},
        {"next month", "2026-01-31", "2026-02-01"},
        {"next month", "2025-12-31", "2026-01-01"},
        {"soon", "2026-03-05", ""},
        {"", "2026-03-05", ""},
        {"tonight or so", "2026-03-05", ""},
    });
}

TEST(DueDate, resolve_weekdays) {
    expectDays({
        {"Friday", "2026-03-05", "2026-03-06"},
        {"friday", "2026-03-06", "2026-03-13"},
        {"this friday", "2026-03-06", "2026-03-13"},
        {"next Friday", "2026-03-05", "2026-03-13"},
        {"next Friday", "2026-03-06", "2026-03-13"},
        {"next Friday", "2026-03-07", "2026-03-20"},
        {"next Sunday", "2026-03-07", "2026-03-15"},
        {"someday", "2026-03-05", ""},
    });
}

TEST(DueDate, resolve_distances) {
    expectDays({
        {"in 3 weeks", "2026-03-05", "2026-03-26"},
        {"within a day", "2026-03-05", "2026-03-06"},
        {"in two days", "2026-12-31", "2027-01-02"},
        {"within three weeks", "2026-03-05", "2026-03-26"},
        {"in 0 days", "2026-03-05", "2026-03-05"},
        {"in ٣ days", "2026-03-05", "2026-03-06"}, // not a number here: one day
        {"in 2912379 days", "2026-03-05", "9999-12-31"},
        {"in 2912380 days", "2026-03-05", ""},
        {"in 99999999999999999999999999 weeks", "2026-03-05", ""},
        {"in 9223372036854775807 weeks", "2026-03-05", ""},
    });
}

TEST(DueDate, resolve_daysOfMonths) {
    expectDays({
        {"March 3rd", "2026-03-04", "2027-03-03"},
        {"March 3rd", "2026-03-03", "2026-03-03"},
        {"3rd of March", "2026-03-01", "2026-03-03"},
        {"december 1", "2026-03-03", "2026-12-01"},
        {"february 31", "2026-01-10", "2026-03-03"},
        {"february 31", "2026-03-10", "2027-03-03"},
        {"february 29", "2024-03-10", "2025-02-28"},
        {"may 0", "2026-03-10", "2026-04-30"},
        {"march", "2026-03-05", ""},
        {"june ٣", "2026-03-05", ""},
        {"june ½", "2026-03-05", ""},
        {"june 99999999999999999999", "2026-03-05", ""},
        {"january 1", "9999-12-31", ""},
        {"tomorrow", "9999-12-31", ""},
        {"today", "9999-12-31", "9999-12-31"},
    });
}

TEST(DueDate, resolve_startsTheDayInItsZone) {
    // In Cairo the clock skips from midnight to one on 24 April 2026; there it is the 24th already at this moment.
    const Date from = parseDate("2026-04-23T22:30:00Z");
    const Region cairo{"en_US", "Africa/Cairo"};
    EXPECT_EQ(formatDate(*DueDate::resolve("today", from, cairo)), "2026-04-23T22:00:00.000Z");
    EXPECT_EQ(formatDate(*DueDate::resolve("tomorrow", from, cairo)), "2026-04-24T21:00:00.000Z");
}

} // namespace
} // namespace varnic
