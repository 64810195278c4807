#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>

namespace varnic {

/// Runs the event loop until the condition holds; false where it does not within half a minute.
template <typename Condition>
bool waitUntil(Condition condition) {
    QElapsedTimer clock;
    clock.start();
    while (!condition()) {
        if (clock.hasExpired(30'000)) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
    }
    return true;
}

} // namespace varnic
