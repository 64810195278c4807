#pragma once

#include "VarnicPlatform/Capture/CaptureDevices.h"
#include "VarnicPlatform/Capture/SoundDevices.h"

#include <string>
#include <vector>

/// Sound devices by what the user calls them.
namespace varnic::cli {

/// The devices that there are now; none where the sound system can't be asked.
SoundDeviceList soundDevices();

/// The device of this name or, else, of this label. Throws std::runtime_error with a sentence that lists what there is
/// for another; `kind` is what such devices are called, “microphone”.
DeviceChoice deviceNamed(const std::string& word, const std::vector<SoundDevice>& devices, const std::string& kind);

} // namespace varnic::cli
