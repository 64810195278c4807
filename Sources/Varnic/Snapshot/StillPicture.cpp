#include "Varnic/Snapshot/StillPicture.h"

#include "Varnic/Background.h"

#include <QCoro/QCoroTimer>
#include <QDeadlineTimer>

#include <chrono>
#include <utility>

namespace varnic {

namespace {

using namespace std::chrono_literals;

constexpr auto lookInterval = 50ms;
/// How many looks in a row must be the same: what the program puts off, it puts off for less.
constexpr int looksAtRest = 6;
constexpr auto patience = 15s;

} // namespace

QCoro::Task<std::optional<QImage>> stillPicture(QQuickWindow& window) {
    QImage last;
    int atRest = 0;
    for (const QDeadlineTimer deadline(patience); !deadline.hasExpired();) {
        co_await QCoro::sleepFor(lookInterval);
        QImage now = window.grabWindow();
        atRest = now == last && !Background::isBusy() ? atRest + 1 : 0;
        last = std::move(now);
        if (atRest == looksAtRest) {
            co_return last;
        }
    }
    co_return std::nullopt;
}

} // namespace varnic
