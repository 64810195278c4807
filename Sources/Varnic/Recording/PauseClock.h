#pragma once

#include <mutex>
#include <optional>
#include <vector>

namespace varnic {

/// Turns seconds since time zero into seconds of recorded audio, with the pauses taken out. Any thread.
class PauseClock {
public:
    /// Begins a pause at `now`, seconds since time zero; nothing if one runs.
    void pause(double now);
    /// Ends the pause; nothing if none runs.
    void resume(double now);

    [[nodiscard]] bool isPaused() const;

    /// Where audio of this time belongs; nothing if it fell into a pause. Times need not come in order, since sound
    /// arrives later than it was.
    [[nodiscard]] std::optional<double> place(double at) const;

    /// Seconds of audio that lie before `now`; during a pause it stands still.
    [[nodiscard]] double elapsed(double now) const;

private:
    struct Pause {
        double start = 0;
        std::optional<double> end;
    };

    mutable std::mutex lock_;
    std::vector<Pause> pauses_;
};

} // namespace varnic
