#pragma once

#include "VarnicPlatform/Capture/FrameRing.h"
#include "VarnicPlatform/Capture/SoundGraph.h"

#include <pipewire/pipewire.h>

#include <atomic>
#include <cstdint>
#include <string>

namespace varnic {

/// A stream from one microphone, mono at 48,000 Hz, that a volume control may move to another one. Made, called and
/// destroyed with the loop locked or in its thread.
class MicrophoneStream {
public:
    MicrophoneStream(pw_core* core, const SoundNode& source);
    MicrophoneStream(const MicrophoneStream&) = delete;
    MicrophoneStream& operator=(const MicrophoneStream&) = delete;
    ~MicrophoneStream();

    /// The microphone that it was made for, or has been moved to, and its name for people.
    [[nodiscard]] std::uint32_t source() const { return source_; }

    [[nodiscard]] const std::string& label() const { return label_; }

    /// Its own node.
    [[nodiscard]] std::uint32_t node() const;

    /// From here on the audio goes into the ring; before, it is dropped. No other stream may push into it any more.
    void deliverTo(FrameRing& ring) { ring_ = &ring; }

    /// The HostClock's time at which audio came last, 0 before the first.
    [[nodiscard]] double lastHeard() const { return lastHeard_; }

    /// Lets audio through only while a microphone is linked: a session manager may put something else in its place.
    void verify(const SoundGraph& graph);

    /// The microphone that it is linked to now; null where there is none.
    [[nodiscard]] const SoundNode* linked(const SoundGraph& graph) const;

    /// It has been moved to that one.
    void follow(const SoundNode& source);

private:
    struct Events;

    void process();

    std::uint32_t source_;
    std::string label_;
    std::atomic<FrameRing*> ring_ = nullptr;
    std::atomic<double> lastHeard_ = 0;
    pw_stream* stream_;
    spa_hook listener_{};
    std::atomic<bool> isVerified_ = false;
};

} // namespace varnic
