#include "Varnic/Recording/DeviceList.h"

#include "VarnicCore/Audio/CaptureError.h"

#include <fmt/format.h>

#include <algorithm>

namespace varnic {

namespace {

/// A choice among devices of a kind; `none` is said where there is no device at all.
std::optional<std::string> notice(const std::vector<SoundDevice>& devices, const DeviceChoice& choice, const char* none,
                                  const char* standIn) {
    if (devices.empty()) {
        return none;
    }
    if (DeviceList::has(devices, choice)) {
        return std::nullopt;
    }
    return fmt::format("“{}” isn’t there. Until it is back, {}.", choice.label.empty() ? choice.name : choice.label,
                       standIn);
}

/// What keeps all devices away; nothing where PipeWire has them.
std::optional<std::string> systemNotice(const SoundDeviceList& list) {
    if (!list.isReachable) {
        return "The sound system, PipeWire, isn’t running.";
    }
    if (!list.hasSound) {
        return "PipeWire is running, but has no sound devices. Does PulseAudio run the sound?";
    }
    return std::nullopt;
}

} // namespace

DeviceList::DeviceList(QObject* parent) : QObject(parent) {
    try {
        devices_ = std::make_unique<SoundDevices>([this](SoundDeviceList found) {
            loop_.post([this, found = std::move(found)]() mutable { list = std::move(found); });
        });
    } catch (const CaptureError&) {
        list = SoundDeviceList();
    }
}

DeviceList::~DeviceList() = default;

bool DeviceList::has(const std::vector<SoundDevice>& devices, const DeviceChoice& choice) {
    return choice.isDefault() ? !devices.empty()
                              : std::ranges::find(devices, choice.name, &SoundDevice::name) != devices.end();
}

std::optional<std::string> DeviceList::microphoneNotice(const DeviceChoice& choice) const {
    const auto& now = list.value();
    if (!now) {
        return std::nullopt;
    }
    const auto problem = systemNotice(*now);
    return problem ? problem
                   : notice(now->microphones, choice, "No microphone was found.",
                            "calls are recorded from the default microphone");
}

std::optional<std::string> DeviceList::outputNotice(const DeviceChoice& choice) const {
    const auto& now = list.value();
    if (!now) {
        return std::nullopt;
    }
    const auto problem = systemNotice(*now);
    return problem ? problem
                   : notice(now->outputs, choice, "No sound output was found.",
                            "all that programs play counts as the other side");
}

} // namespace varnic
