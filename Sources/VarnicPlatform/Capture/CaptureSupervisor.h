#pragma once

#include "VarnicPlatform/Capture/FrameRing.h"
#include "VarnicPlatform/Capture/MicrophoneSide.h"
#include "VarnicPlatform/Capture/ProgramsFilter.h"
#include "VarnicPlatform/Capture/SoundConnection.h"
#include "VarnicPlatform/Capture/Watchdog.h"

#include <atomic>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace varnic {

/// Opens the two sides on PipeWire and keeps them open: it goes after microphones as they come and go, the programs
/// that play, a server that comes back and a session manager that does. Audio goes into the rings.
class CaptureSupervisor {
public:
    CaptureSupervisor(FrameRing& microphoneRing, FrameRing& programsRing);
    CaptureSupervisor(const CaptureSupervisor&) = delete;
    CaptureSupervisor& operator=(const CaptureSupervisor&) = delete;

    ~CaptureSupervisor() { close(); }

    /// Connects to the server; false where there is none that answers.
    [[nodiscard]] bool connect();

    /// Opens a side and waits until it runs. Both throw CaptureError; the programs' side stays closed then, while a
    /// microphone is still waited for.
    void openMicrophone();
    void openPrograms();

    /// From here on what was opened is kept open.
    void watch();

    /// What is recorded from here on, also while it is.
    void choose(const CaptureDevices& devices);

    /// Ends both sides: nothing comes into the rings any more.
    void close();

    /// What went wrong, a sentence each, each once. Any thread.
    [[nodiscard]] std::vector<std::string> problems() const;
    void addProblem(const std::string& sentence);

    /// See MicrophoneSide::notice; else that the chosen output is gone. Any thread.
    [[nodiscard]] std::optional<std::string> notice() const;

    /// Whether audio of other programs ought to be coming in. Any thread.
    [[nodiscard]] bool expectsPrograms() const { return expectsPrograms_; }

private:
    void onChange();
    void tend();
    [[nodiscard]] bool tendConnection(double now);
    void tendMicrophone(double now);
    void tendPrograms(double now);
    void makePrograms(double now);
    [[nodiscard]] const SoundNode* heardOutput() const;
    void updateNotice();

    FrameRing& programsRing_;
    bool wantsMicrophone_ = false;
    bool wantsPrograms_ = false;
    DeviceChoice heard_;
    Watchdog programsWatchdog_;
    double retryAt_ = 0;
    double retryDelay_ = 0;
    std::atomic<bool> expectsPrograms_ = false;
    /// Guards the next two.
    mutable std::mutex wordsLock_;
    std::vector<std::string> problems_;
    std::optional<std::string> notice_;
    SoundConnection connection_;
    MicrophoneSide microphone_;
    std::optional<ProgramsFilter> programs_;
};

} // namespace varnic
