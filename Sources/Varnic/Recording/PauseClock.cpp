#include "Varnic/Recording/PauseClock.h"

#include <algorithm>

namespace varnic {

void PauseClock::pause(double now) {
    const std::lock_guard guard(lock_);
    if (pauses_.empty() || pauses_.back().end) {
        pauses_.push_back({now, std::nullopt});
    }
}

void PauseClock::resume(double now) {
    const std::lock_guard guard(lock_);
    if (!pauses_.empty() && !pauses_.back().end) {
        pauses_.back().end = std::max(now, pauses_.back().start);
    }
}

bool PauseClock::isPaused() const {
    const std::lock_guard guard(lock_);
    return !pauses_.empty() && !pauses_.back().end;
}

std::optional<double> PauseClock::place(double at) const {
    const std::lock_guard guard(lock_);
    double sound = at;
    for (const Pause& pause : pauses_) {
        if (at < pause.start) {
            break;
        }
        if (!pause.end || at < *pause.end) {
            return std::nullopt;
        }
        sound -= *pause.end - pause.start;
    }
    return sound;
}

double PauseClock::elapsed(double now) const {
    const std::lock_guard guard(lock_);
    double sound = now;
    for (const Pause& pause : pauses_) {
        sound -= std::max(std::min(pause.end.value_or(now), now) - pause.start, 0.0);
    }
    return sound;
}

} // namespace varnic
