#pragma once

#include <string>

namespace varnic {

/// A sound device that the user has chosen, or whichever the system has for its default.
struct DeviceChoice {
    /// PipeWire's name of its node; empty for the system's default.
    std::string name;
    /// Its name for people, also for when it isn't there.
    std::string label;

    [[nodiscard]] bool isDefault() const { return name.empty(); }

    bool operator==(const DeviceChoice&) const = default;
};

/// What a call is recorded from. While a chosen device isn't there, the default stands in for it.
struct CaptureDevices {
    DeviceChoice microphone;
    /// The output whose sound is the other side. By default all that other programs play, wherever they play it.
    DeviceChoice heard;

    bool operator==(const CaptureDevices&) const = default;
};

} // namespace varnic
