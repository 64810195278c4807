#pragma once

#include "VarnicPlatform/Capture/FrameRing.h"
#include "VarnicPlatform/Capture/SoundGraph.h"

#include <pipewire/pipewire.h>

#include <atomic>
#include <cstdint>
#include <string>

namespace varnic {

/// A stream from one microphone into a ring, mono at 48,000 Hz. Made, called and destroyed with the loop locked or in
/// its thread.
class MicrophoneStream {
public:
    MicrophoneStream(pw_core* core, const SoundNode& source, FrameRing& ring);
    MicrophoneStream(const MicrophoneStream&) = delete;
    MicrophoneStream& operator=(const MicrophoneStream&) = delete;
    ~MicrophoneStream();

    [[nodiscard]] std::uint32_t source() const { return source_; }

    /// Lets sound through only while a microphone is linked: a session manager may put something else in its place.
    void verify(const SoundGraph& graph);

    /// Whether the stream has been cut off, or never could be made.
    [[nodiscard]] bool hasFailed() const;

private:
    struct Events;

    void process();

    std::uint32_t source_;
    FrameRing& ring_;
    pw_stream* stream_;
    spa_hook listener_{};
    std::atomic<bool> isVerified_ = false;
    bool wasConnected_ = false;
};

} // namespace varnic
