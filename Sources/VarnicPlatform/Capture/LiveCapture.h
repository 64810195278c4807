#pragma once

#include "VarnicCore/Audio/CaptureSource.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>

namespace varnic {

/// The real audio of a call, from PipeWire: the default microphone, in mono, and all that other programs play, in
/// stereo; both at 48,000 Hz and in step with the HostClock however fast the devices' clocks run. It follows default
/// devices and programs as they change, lets another microphone stand in for one that delivers nothing, and comes back
/// by itself when a device or the server does; until then a side delivers nothing.
class LiveCapture : public CaptureSource {
public:
    LiveCapture();
    ~LiveCapture() override;

    /// How often any LiveCapture of this process was started.
    static int startCount() { return starts; }

    /// Waits at most some seconds for a device to open.
    std::vector<Speaker> start(double hostStart, WantedSides wanted, Deliver deliver) override;
    /// Not from within `deliver`.
    void stop() override;

    /// The microphone, where none delivered at the start.
    [[nodiscard]] std::vector<Speaker> awaited() const override;
    [[nodiscard]] std::optional<std::string> notice() const override;
    [[nodiscard]] std::vector<std::string> problems() const override;
    /// Also true while the microphone is gone, and while the connection to the server is.
    [[nodiscard]] bool expects(Speaker speaker) const override;

    /// Frames that came but were dropped since the machine did not keep up.
    [[nodiscard]] std::uint64_t lostFrames() const;

private:
    class Session;

    inline static std::atomic<int> starts = 0;

    [[nodiscard]] std::shared_ptr<Session> current() const;

    mutable std::mutex lock_;
    /// The running one or, for its problems, the last.
    std::shared_ptr<Session> session_;
};

} // namespace varnic
