#include "Varnic/SelfTest/Checks.h"

#include <QCoro/QCoroTimer>
#include <QDeadlineTimer>

#include <fmt/format.h>

#include <cstdio>

namespace varnic {

bool Checks::check(bool condition, std::string_view sentence, std::string_view diagnostic) {
    if (condition) {
        ++passes_;
        fmt::print(stdout, "PASS {}\n", sentence);
    } else {
        ++fails_;
        fmt::print(stdout, "FAIL {}{}{}\n", sentence, diagnostic.empty() ? "" : " ", diagnostic);
    }
    return condition;
}

std::string Checks::verdict() const {
    return fails_ == 0 ? fmt::format("SELFTEST OK ({} checks)", passes_)
                       : fmt::format("SELFTEST {} FAILURES ({} passed)", fails_, passes_);
}

QCoro::Task<bool> Checks::until(std::chrono::milliseconds limit, std::function<bool()> condition) {
    constexpr auto period = std::chrono::milliseconds(100);
    const QDeadlineTimer deadline(limit);
    while (!condition()) {
        if (deadline.hasExpired()) {
            co_return false;
        }
        co_await QCoro::sleepFor(period);
    }
    co_return true;
}

} // namespace varnic
