#pragma once

#include "VarnicPlatform/Capture/FrameRing.h"
#include "VarnicPlatform/Capture/MicrophoneStream.h"
#include "VarnicPlatform/Capture/ProgramsFilter.h"
#include "VarnicPlatform/Capture/SoundConnection.h"

#include <atomic>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace varnic {

/// Notices when sound that ought to come has not come for a while, and waits longer after each attempt to mend it.
class Watchdog {
public:
    /// A new attempt has been made at this time.
    void attempted(double now) { since_ = now; }

    /// Whether nothing has come since the attempt, and for too long; `lastPush` is when something last did. The next
    /// attempt is given more time then.
    [[nodiscard]] bool barks(double now, double lastPush);

private:
    static constexpr double shortest = 2;
    static constexpr double longest = 8;

    double since_ = 0;
    double patience_ = shortest;
};

/// Opens the two sides on PipeWire and keeps them open: it goes after the default microphone, the programs that play, a
/// server that comes back and a session manager that does. Sound goes into the rings.
class CaptureSupervisor {
public:
    CaptureSupervisor(FrameRing& microphoneRing, FrameRing& programsRing);
    CaptureSupervisor(const CaptureSupervisor&) = delete;
    CaptureSupervisor& operator=(const CaptureSupervisor&) = delete;

    ~CaptureSupervisor() { close(); }

    /// Connects to the server; false where there is none that answers.
    [[nodiscard]] bool connect();

    /// Opens a side and waits until it runs. Both throw CaptureError, and leave the side closed then.
    void openMicrophone();
    void openPrograms();

    /// From here on what was opened is kept open.
    void watch();

    /// Ends both sides: nothing comes into the rings any more.
    void close();

    /// What went wrong, a sentence each, each once. Any thread.
    [[nodiscard]] std::vector<std::string> problems() const;
    void addProblem(const std::string& sentence);

    /// Whether sound of other programs ought to be coming in. Any thread.
    [[nodiscard]] bool expectsPrograms() const { return expectsPrograms_; }

private:
    void onChange();
    void tend();
    [[nodiscard]] bool tendConnection(double now);
    void tendMicrophone(double now);
    void tendPrograms(double now);
    void makeMicrophone(const SoundNode& source, double now);
    void makePrograms(double now);

    FrameRing& microphoneRing_;
    FrameRing& programsRing_;
    bool wantsMicrophone_ = false;
    bool wantsPrograms_ = false;
    Watchdog microphoneWatchdog_;
    Watchdog programsWatchdog_;
    double retryAt_ = 0;
    double retryDelay_ = 0;
    std::atomic<bool> expectsPrograms_ = false;
    mutable std::mutex problemsLock_;
    std::vector<std::string> problems_;
    SoundConnection connection_;
    std::optional<MicrophoneStream> microphone_;
    std::optional<ProgramsFilter> programs_;
};

} // namespace varnic
