#pragma once

#include <optional>
#include <string>
#include <vector>

namespace varnic {

/// What could be recorded at this moment, in words for the user.
struct SoundSurvey {
    /// Whether PipeWire answers.
    bool isReachable = false;
    /// Whether PipeWire, and not another sound server, has the devices.
    bool hasSound = false;
    /// The microphone and the output in use; none where there is no such device.
    std::optional<std::string> microphone;
    std::optional<std::string> output;
    /// Other programs that play now, each once, sorted.
    std::vector<std::string> playing;

    /// Asks PipeWire; takes some milliseconds, at most a few seconds. Any thread. Throws CaptureError where PipeWire's
    /// library cannot be used.
    static SoundSurvey take();
};

} // namespace varnic
