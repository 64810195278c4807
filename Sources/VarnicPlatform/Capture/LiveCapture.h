#pragma once

#include "VarnicCore/Audio/CaptureSource.h"
#include "VarnicPlatform/Capture/CaptureDevices.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>

namespace varnic {

/// The real audio of a call, from PipeWire: a microphone, in mono, and what other programs play, in stereo; both at
/// 48,000 Hz and in step with the HostClock however fast the devices' clocks run. Unless devices are chosen, that is
/// the default microphone and all that programs play. It follows default devices and programs as they change, lets
/// another microphone stand in for one that delivers nothing, and comes back by itself when a device or the server
/// does; until then a side delivers nothing.
class LiveCapture : public CaptureSource {
public:
    explicit LiveCapture(CaptureDevices devices = {});
    ~LiveCapture() override;

    /// Records from these from here on, also while it runs. Any thread.
    void choose(const CaptureDevices& devices);

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

    [[nodiscard]] CaptureDevices chosen() const;
    [[nodiscard]] std::shared_ptr<Session> current() const;

    mutable std::mutex lock_;
    CaptureDevices devices_;
    /// The running one or, for its problems, the last.
    std::shared_ptr<Session> session_;
};

} // namespace varnic
