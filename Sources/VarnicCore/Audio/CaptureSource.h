#pragma once

#include "VarnicCore/Audio/PcmBuffer.h"
#include "VarnicCore/Models/Speaker.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace varnic {

/// The clock that stamps audio: seconds of CLOCK_MONOTONIC, which setting the time of day does not move.
namespace HostClock {

inline double now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace HostClock

/// The sides of a call that are to be recorded.
struct WantedSides {
    bool you = true;
    bool them = true;
};

/// What produces the audio of the two sides of a call. Made for one recording. `start` and `stop` belong to one thread
/// at a time; the other operations may be called from any.
class CaptureSource {
public:
    /// Takes a piece of one side's audio and the time of its first sample in seconds since time zero, never negative.
    /// Called from any thread, of two sides perhaps at once; it must not throw and may not take long.
    using Deliver = std::function<void(Speaker speaker, PcmBuffer buffer, double at)>;

    CaptureSource() = default;
    CaptureSource(const CaptureSource&) = delete;
    CaptureSource& operator=(const CaptureSource&) = delete;
    virtual ~CaptureSource() = default;

    /// Begins to deliver the wanted sides, one while the other still opens, and gives those that really started; blocks
    /// for as long as that takes. `hostStart` is time zero on the HostClock. Throws CaptureError when no side starts,
    /// AudioError for a file that cannot be read.
    virtual std::vector<Speaker> start(double hostStart, WantedSides wanted, Deliver deliver) = 0;

    /// Ends delivery: after it has returned, `deliver` is not called again. May be called with nothing started.
    virtual void stop() = 0;

    /// The sides that `start` did not give and that may begin to deliver at any time after it, such as a microphone
    /// that is plugged in late.
    [[nodiscard]] virtual std::vector<Speaker> awaited() const { return {}; }

    /// What the user should know of where the audio comes from now, a sentence; nothing while all is as it was chosen.
    [[nodiscard]] virtual std::optional<std::string> notice() const { return std::nullopt; }

    /// What went wrong since the start, a sentence each.
    [[nodiscard]] virtual std::vector<std::string> problems() const { return {}; }

    /// Whether audio of this side ought to be coming in now: always for an open microphone, for the computer's sound
    /// only while a program plays. Where it is true and nothing comes, something is wrong.
    [[nodiscard]] virtual bool expects(Speaker /*speaker*/) const { return false; }
};

} // namespace varnic
