#include "VarnicCLI/SoundDeviceChoice.h"

#include "VarnicCore/Audio/CaptureError.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <future>
#include <mutex>
#include <stdexcept>

namespace varnic::cli {

SoundDeviceList soundDevices() {
    std::promise<SoundDeviceList> first;
    std::once_flag once;
    try {
        const SoundDevices devices(
            [&](SoundDeviceList list) { std::call_once(once, [&] { first.set_value(std::move(list)); }); });
        return first.get_future().get();
    } catch (const CaptureError&) {
        return {};
    }
}

DeviceChoice deviceNamed(const std::string& word, const std::vector<SoundDevice>& devices, const std::string& kind) {
    auto found = std::ranges::find(devices, word, &SoundDevice::name);
    if (found == devices.end()) {
        found = std::ranges::find(devices, word, &SoundDevice::label);
    }
    if (found != devices.end()) {
        return {.name = found->name, .label = found->label};
    }
    std::vector<std::string> labels;
    std::ranges::transform(devices, std::back_inserter(labels),
                           [](const SoundDevice& device) { return fmt::format("“{}”", device.label); });
    throw std::runtime_error(labels.empty()
                                 ? fmt::format("There is no {}.", kind)
                                 : fmt::format("There is no {} “{}”, but {}.", kind, word, fmt::join(labels, ", ")));
}

} // namespace varnic::cli
