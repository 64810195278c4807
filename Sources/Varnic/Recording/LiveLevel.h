#pragma once

#include "VarnicCore/Models/Speaker.h"
#include "VarnicPlatform/Capture/CaptureDevices.h"

#include <QObject>
#include <QProperty>
#include <QTimer>

#include <memory>
#include <optional>
#include <string>

namespace varnic {

/// How loud one side would be in a recording, for the eye, heard as a recording hears it. It listens between `start`
/// and `stop` only, and keeps nothing. It must be stopped or gone before the model ends. Main thread.
class LiveLevel : public QObject {
    Q_OBJECT

public:
    explicit LiveLevel(Speaker side, QObject* parent = nullptr);
    LiveLevel(const LiveLevel&) = delete;
    LiveLevel& operator=(const LiveLevel&) = delete;
    ~LiveLevel() override;

    /// Listens to the side from these devices, in place of what it listened to.
    void start(const CaptureDevices& devices);
    void stop();

    [[nodiscard]] bool isRunning() const { return session_ != nullptr; }

    /// 0 to 1, some twenty times a second while it listens; 0 otherwise.
    QProperty<float> level{0};
    /// The user's sentence about what stands in for a chosen device, or why nothing can be heard.
    QProperty<std::optional<std::string>> notice;

private:
    struct Session;

    void tick();

    const Speaker side_;
    QTimer timer_;
    std::shared_ptr<Session> session_;
};

} // namespace varnic
