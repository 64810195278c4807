#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace varnic {

/// A microphone or an output.
struct SoundDevice {
    /// PipeWire's name of its node, by which it is known again.
    std::string name;
    /// Its name for people.
    std::string label;

    bool operator==(const SoundDevice&) const = default;
};

/// The devices that there are.
struct SoundDeviceList {
    /// Whether PipeWire answers.
    bool isReachable = false;
    /// Whether PipeWire, and not another sound server, has the devices.
    bool hasSound = false;
    /// The system's default one first.
    std::vector<SoundDevice> microphones;
    std::vector<SoundDevice> outputs;

    bool operator==(const SoundDeviceList&) const = default;
};

/// Follows the sound devices as they come and go, and the sound server as it does. Made and destroyed on one thread.
class SoundDevices {
public:
    /// Called on a thread of its own with each new list; soon with the first one.
    using Changed = std::function<void(SoundDeviceList list)>;

    /// What is told at once when set, with nothing asked of the system. Set before one is made.
    static inline std::optional<SoundDeviceList> override;

    /// Throws CaptureError where PipeWire's library cannot be used.
    explicit SoundDevices(Changed changed);
    SoundDevices(const SoundDevices&) = delete;
    SoundDevices& operator=(const SoundDevices&) = delete;
    /// `changed` is not called any more.
    ~SoundDevices();

private:
    void look();
    void tend();

    class Connection;

    Changed changed_;
    std::unique_ptr<Connection> connection_;
};

} // namespace varnic
