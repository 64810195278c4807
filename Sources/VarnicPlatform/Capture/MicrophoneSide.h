#pragma once

#include "VarnicPlatform/Capture/CaptureDevices.h"
#include "VarnicPlatform/Capture/FrameRing.h"
#include "VarnicPlatform/Capture/MicrophoneStream.h"
#include "VarnicPlatform/Capture/SoundGraph.h"
#include "VarnicPlatform/Capture/Watchdog.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace varnic {

/// The audio of the chosen microphone, the system's default unless the user has chosen one, on its way into the ring
/// or, while that one delivers nothing or is gone, the audio of another one that does. A microphone that only delivers
/// silence delivers: it may be muted for a reason.
/// Called with the loop locked or in its thread.
class MicrophoneSide {
public:
    explicit MicrophoneSide(FrameRing& ring) : ring_(ring) {}

    /// What is recorded from here on; by default what the system has for its default.
    void choose(const DeviceChoice& choice);

    /// Opens, changes and mends what has to be; to be called some times a second. Gives what went wrong, a sentence
    /// each.
    std::vector<std::string> tend(pw_core* core, const SoundGraph& graph, double now);

    /// See MicrophoneStream::verify.
    void verify(const SoundGraph& graph);

    void close();

    /// Whether audio has come since the stream was opened.
    [[nodiscard]] bool delivers() const { return current_ && current_->lastHeard() > 0; }

    /// Says which microphone stands in for the chosen one, or that none is left; nothing while that one is recorded.
    [[nodiscard]] std::optional<std::string> notice() const { return notice_; }

private:
    void followMove(const SoundGraph& graph, const std::vector<const SoundNode*>& microphones);
    const SoundNode* choose(const std::vector<const SoundNode*>& microphones);
    [[nodiscard]] const SoundNode* nextOf(const std::vector<const SoundNode*>& microphones,
                                          const SoundNode* wanted) const;
    void open(pw_core* core, const SoundNode& source, double now);
    void tryWanted(pw_core* core, const SoundNode& wanted, double now);
    [[nodiscard]] std::optional<std::string> standIn(const SoundNode& wanted, double now) const;

    FrameRing& ring_;
    /// The one that is recorded, and the one that shall be once it delivers.
    std::unique_ptr<MicrophoneStream> current_;
    std::unique_ptr<MicrophoneStream> wanted_;
    Watchdog currentWatchdog_;
    Watchdog wantedWatchdog_;
    /// When the wanted one was first tried beside the current one.
    double wantedSince_ = 0;
    /// The chosen microphone's name, and its name for people.
    std::string chosen_;
    std::string chosenLabel_;
    /// Whether the user has chosen it, so that a change of the default says nothing.
    bool isFixed_ = false;
    /// The name of the system's default when it was last looked at.
    std::string default_;
    std::optional<std::string> notice_;
};

} // namespace varnic
