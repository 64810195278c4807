#include "VarnicCore/Models/Date.h"

#include "VarnicCore/Models/FixedClock.h"

#include <fmt/format.h>

#include <atomic>
#include <optional>
#include <stdexcept>

namespace varnic {

namespace {

using namespace std::chrono;

constexpr Date noMoment = Date::min();

/// That of a FixedClock.
std::atomic<Date> fixedMoment = noMoment;

/// Walks over the text of a date; every read takes what it names from the front, or gives nothing.
class Scanner {
public:
    explicit Scanner(std::string_view text) : rest_(text) {}

    std::optional<int> digits(std::size_t count) {
        if (rest_.size() < count) {
            return std::nullopt;
        }
        int value = 0;
        for (const char c : rest_.substr(0, count)) {
            if (c < '0' || c > '9') {
                return std::nullopt;
            }
            value = value * 10 + (c - '0');
        }
        rest_.remove_prefix(count);
        return value;
    }

    bool take(std::string_view anyOf) {
        if (rest_.empty() || anyOf.find(rest_.front()) == std::string_view::npos) {
            return false;
        }
        taken_ = rest_.front();
        rest_.remove_prefix(1);
        return true;
    }

    [[nodiscard]] char taken() const { return taken_; }

    [[nodiscard]] bool atEnd() const { return rest_.empty(); }

    /// The digits of a fraction as milliseconds, further digits cut off.
    std::optional<milliseconds> fraction() {
        int value = 0;
        std::size_t count = 0;
        while (auto digit = digits(1)) {
            if (count++ < 3) {
                value = value * 10 + *digit;
            }
        }
        if (count == 0) {
            return std::nullopt;
        }
        for (; count < 3; ++count) {
            value *= 10;
        }
        return milliseconds(value);
    }

private:
    std::string_view rest_;
    char taken_ = 0;
};

std::optional<minutes> zoneOffset(Scanner& scanner) {
    if (scanner.take("Zz")) {
        return minutes(0);
    }
    if (!scanner.take("+-")) {
        return std::nullopt;
    }
    const int sign = scanner.taken() == '-' ? -1 : 1;
    const auto hour = scanner.digits(2);
    scanner.take(":");
    const auto minute = scanner.digits(2);
    if (!hour || !minute || *hour > 23 || *minute > 59) {
        return std::nullopt;
    }
    return sign * (hours(*hour) + minutes(*minute));
}

std::optional<Date> scanDate(std::string_view text) {
    Scanner scanner(text);
    const auto y = scanner.digits(4);
    const bool dash1 = scanner.take("-");
    const auto m = scanner.digits(2);
    const bool dash2 = scanner.take("-");
    const auto d = scanner.digits(2);
    const bool t = scanner.take("Tt");
    const auto hour = scanner.digits(2);
    const bool colon1 = scanner.take(":");
    const auto minute = scanner.digits(2);
    const bool colon2 = scanner.take(":");
    const auto second = scanner.digits(2);
    if (!y || !m || !d || !hour || !minute || !second || !dash1 || !dash2 || !t || !colon1 || !colon2) {
        return std::nullopt;
    }
    const auto date = year(*y) / month(static_cast<unsigned>(*m)) / day(static_cast<unsigned>(*d));
    // A leap second (60) is the first moment of the next minute.
    if (!date.ok() || *hour > 23 || *minute > 59 || *second > 60) {
        return std::nullopt;
    }
    std::optional<milliseconds> fraction = milliseconds(0);
    if (scanner.take(".")) {
        fraction = scanner.fraction();
    }
    const auto offset = zoneOffset(scanner);
    if (!fraction || !offset || !scanner.atEnd()) {
        return std::nullopt;
    }
    return sys_days(date) + hours(*hour) + minutes(*minute) + seconds(*second) + *fraction - *offset;
}

} // namespace

Date currentDate() {
    const Date fixed = fixedMoment;
    return fixed == noMoment ? floor<milliseconds>(system_clock::now()) : fixed;
}

FixedClock::FixedClock(Date moment) {
    fixedMoment = moment;
}

FixedClock::~FixedClock() {
    fixedMoment = noMoment;
}

std::string formatDate(Date date) {
    const auto midnight = floor<days>(date);
    const year_month_day day(midnight);
    const hh_mm_ss time(date - midnight);
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}.{:03}Z", static_cast<int>(day.year()),
                       static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()), time.hours().count(),
                       time.minutes().count(), time.seconds().count(), time.subseconds().count());
}

Date parseDate(std::string_view text) {
    if (const auto date = scanDate(text)) {
        return *date;
    }
    throw std::invalid_argument(fmt::format("Bad date {}", text));
}

} // namespace varnic
