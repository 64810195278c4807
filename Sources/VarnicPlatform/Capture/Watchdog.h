#pragma once

#include <algorithm>

namespace varnic {

/// Notices when audio that ought to come has not come for a while, and waits longer after each attempt to mend it.
/// Times are the HostClock's.
class Watchdog {
public:
    /// A new attempt has been made at this time.
    void attempted(double now) { since_ = now; }

    /// Whether nothing has come since the attempt, and for too long; `lastSound` is when something last did. The next
    /// attempt is given more time then.
    [[nodiscard]] bool barks(double now, double lastSound) {
        if (lastSound > since_) {
            patience_ = shortest;
        }
        if (now - std::max(since_, lastSound) < patience_) {
            return false;
        }
        patience_ = std::min(patience_ * 2, longest);
        return true;
    }

private:
    static constexpr double shortest = 2;
    static constexpr double longest = 8;

    double since_ = 0;
    double patience_ = shortest;
};

} // namespace varnic
