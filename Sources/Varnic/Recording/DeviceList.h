#pragma once

#include "Varnic/LoopExecutor.h"
#include "VarnicPlatform/Capture/CaptureDevices.h"
#include "VarnicPlatform/Capture/SoundDevices.h"

#include <QObject>
#include <QProperty>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace varnic {

/// The sound devices to choose from, live as long as this exists. Main thread.
class DeviceList : public QObject {
    Q_OBJECT

public:
    explicit DeviceList(QObject* parent = nullptr);
    DeviceList(const DeviceList&) = delete;
    DeviceList& operator=(const DeviceList&) = delete;
    ~DeviceList() override;

    /// Nothing until the sound system has answered, or hasn't.
    QProperty<std::optional<SoundDeviceList>> list;

    /// Whether the chosen device, or any where the default is chosen, is among these.
    static bool has(const std::vector<SoundDevice>& devices, const DeviceChoice& choice);

    /// The user's sentence about a chosen device that isn't there, or about there being none; nothing where all is well
    /// or nothing is known yet.
    [[nodiscard]] std::optional<std::string> microphoneNotice(const DeviceChoice& choice) const;
    [[nodiscard]] std::optional<std::string> outputNotice(const DeviceChoice& choice) const;

private:
    LoopExecutor loop_;
    /// Last, so that it tells nothing any more when the rest ends.
    std::unique_ptr<SoundDevices> devices_;
};

} // namespace varnic
