#include "VarnicCore/Summariser/DueDate.h"

#include "VarnicCore/Text/Pattern.h"
#include "VarnicCore/Text/TextKit.h"
#include "VarnicCore/Text/Unicode.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <system_error>

namespace varnic::DueDate {

namespace {

using namespace std::chrono;

constexpr std::array<std::string_view, 7> weekdayNames{"sunday",   "monday", "tuesday", "wednesday",
                                                       "thursday", "friday", "saturday"};
constexpr std::array<std::string_view, 12> monthNames{"january",   "february", "march",    "april",
                                                      "may",       "june",     "july",     "august",
                                                      "september", "october",  "november", "december"};

struct Kind {
    Pattern pattern;
    /// What a match yields; the matched text itself where this is empty.
    std::string_view gives;

    explicit Kind(std::string_view expression, std::string_view result = {}) : pattern(expression), gives(result) {}
};

/// In the order in which they are tried.
const std::array<Kind, 13>& kinds() {
    static const std::array<Kind, 13> table{
        Kind(R"(\b(?:end of (?:the )?day|eod)\b)", "end of day"),
        Kind(R"(\b(?:end of (?:the )?week|eow)\b)", "end of the week"),
        Kind(R"(\b(?:end of (?:the )?month)\b)", "end of the month"),
        Kind(R"(\btomorrow(?: morning| afternoon| evening)?\b)"),
        Kind(R"(\btonight\b)"),
        Kind(R"(\btoday\b)"),
        Kind(R"(\bthis (?:morning|afternoon|evening)\b)"),
        Kind(R"(\bnext week\b)"),
        Kind(R"(\bnext month\b)"),
        Kind(R"(\b(?:next |this )?(?:monday|tuesday|wednesday|thursday|friday|saturday|sunday)\b)"),
        Kind(R"(\b(?:january|february|march|april|may|june|july|august|september|october|november|december) )"
             R"(\d{1,2}(?:st|nd|rd|th)?\b)"),
        // "May" is left out: it is more often the verb.
        Kind(R"(\b\d{1,2}(?:st|nd|rd|th)? (?:of )?)"
             R"((?:january|february|march|april|june|july|august|september|october|november|december)\b)"),
        Kind(R"(\b(?:in|within) (?:a|one|two|three|\d+) (?:days?|weeks?)\b)"),
    };
    return table;
}

bool isSpace(char32_t c) {
    return c == U' ';
}

/// The weekday in whose name the text ends.
std::optional<weekday> weekdayAtEnd(std::string_view lower) {
    const auto* const found =
        std::ranges::find_if(weekdayNames, [&](std::string_view name) { return lower.ends_with(name); });
    if (found == weekdayNames.end()) {
        return std::nullopt;
    }
    return weekday(static_cast<unsigned>(found - weekdayNames.begin()));
}

/// The first such weekday after the day.
local_days next(weekday wanted, local_days day) {
    const local_days tomorrow = day + days(1);
    return tomorrow + (wanted - weekday(tomorrow));
}

/// More days than this lead past the year 9999 from anywhere.
constexpr std::int64_t mostDays = 4'000'000;

/// A number in ASCII digits; `mostDays` for anything larger, nothing for other text.
std::optional<std::int64_t> number(std::string_view text) {
    std::int64_t value = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::invalid_argument || rest != text.data() + text.size() || text.starts_with('-')) {
        return std::nullopt;
    }
    return error == std::errc::result_out_of_range ? mostDays : std::min(value, mostDays);
}

local_days firstOfNextMonth(local_days today) {
    const year_month_day date(today);
    return local_days((date.year() / date.month() + months(1)) / 1);
}

local_days namedWeekday(weekday wanted, std::string_view lower, local_days today) {
    const local_days date = next(wanted, today);
    const bool isNext = lower.starts_with("next ");
    return isNext && date - today <= days(6) ? date + days(7) : date;
}

/// What "in three weeks" adds to the day on which it is said.
std::optional<days> distance(std::string_view lower) {
    static const Pattern pattern("(?:in|within) (a|one|two|three|\\d+) (day|week)s?");
    const icu::UnicodeString units = Unicode::utf16(lower);
    const auto match = pattern.find(units);
    if (!match) {
        return std::nullopt;
    }
    const std::string found = Unicode::utf8(units.tempSubStringBetween(match->begin, match->end));
    const auto pieces = Unicode::split(found, isSpace);
    const std::string_view word = pieces.at(1);
    std::int64_t count = number(word).value_or(1);
    if (word == "two") {
        count = 2;
    } else if (word == "three") {
        count = 3;
    }
    return days(count * (pieces.at(2).starts_with("week") ? 7 : 1));
}

local_days aYearOn(local_days day) {
    const year_month_day date(day);
    const year_month_day moved = date + years(1);
    return moved.ok() ? local_days(moved) : local_days(moved.year() / moved.month() / last);
}

/// The day of a phrase that names a month: its first number, this year or the next.
std::optional<local_days> dayOfMonth(std::string_view lower, local_days today) {
    const auto* const name = std::ranges::find_if(
        monthNames, [&](std::string_view month) { return lower.find(month) != std::string_view::npos; });
    const auto numbers = Unicode::split(lower, [](char32_t c) { return !Unicode::isNumber(c); });
    if (name == monthNames.end() || numbers.empty()) {
        return std::nullopt;
    }
    const auto count = number(numbers.front());
    if (!count) {
        return std::nullopt;
    }
    const month named(static_cast<unsigned>(name - monthNames.begin()) + 1);
    // A number too large for the month runs on into the next ones.
    const local_days day = local_days(year_month_day(today).year() / named / 1) + days(*count - 1);
    return day < today ? aYearOn(day) : day;
}

std::optional<local_days> resolveDay(std::string_view lower, local_days today) {
    const auto named = weekdayAtEnd(lower);
    if (lower.starts_with("end of day") || lower == "tonight" || lower == "today") {
        return today;
    }
    if (lower.starts_with("this ") && !named) {
        return today;
    }
    if (lower.starts_with("tomorrow")) {
        return today + days(1);
    }
    if (lower == "next week") {
        return next(Monday, today);
    }
    if (lower == "end of the week") {
        return next(Friday, today - days(1));
    }
    if (lower == "next month") {
        return firstOfNextMonth(today);
    }
    if (lower == "end of the month") {
        return firstOfNextMonth(today) - days(1);
    }
    if (named) {
        return namedWeekday(*named, lower, today);
    }
    if (const auto ahead = distance(lower)) {
        return today + *ahead;
    }
    return dayOfMonth(lower, today);
}

} // namespace

std::optional<std::string> phrase(std::string_view text) {
    const std::string lower = Unicode::plainApostrophes(Unicode::lowerCased(text));
    const bool saysMay = lower.find("by may") != std::string::npos || lower.find("on may") != std::string::npos;
    const icu::UnicodeString units = Unicode::utf16(lower);
    for (const auto& [pattern, gives] : kinds()) {
        const auto match = pattern.find(units);
        if (!match) {
            continue;
        }
        const std::string found = Unicode::utf8(units.tempSubStringBetween(match->begin, match->end));
        // "We may 2 of them": the verb.
        if (!found.starts_with("may ") || saysMay) {
            return pretty(gives.empty() ? std::string_view(found) : gives);
        }
    }
    return std::nullopt;
}

std::string pretty(std::string_view phrase) {
    std::string result;
    for (const auto piece : Unicode::split(phrase, isSpace)) {
        const bool isName = std::ranges::find(weekdayNames, piece) != weekdayNames.end() ||
                            std::ranges::find(monthNames, piece) != monthNames.end();
        result += result.empty() ? "" : " ";
        result += isName ? TextKit::capitalisedFirst(piece) : std::string(piece);
    }
    return result;
}

std::optional<Date> resolve(std::string_view phrase, Date from, const Region& region) {
    constexpr local_days first = local_days(year(0) / January / 1);
    constexpr local_days limit = local_days(year(10000) / January / 1);
    const local_days today = region.day(from);
    if (today < first || today >= limit) {
        return std::nullopt;
    }
    const auto day = resolveDay(Unicode::lowerCased(phrase), today);
    if (!day || *day >= limit) {
        return std::nullopt;
    }
    return region.startOfDay(*day);
}

} // namespace varnic::DueDate
