#pragma once

#include "VarnicPlatform/Capture/SoundConnection.h"
#include "VarnicPlatform/Playback/PlaybackQueue.h"

#include <pipewire/pipewire.h>

#include <atomic>
#include <stdexcept>

namespace varnic {

/// Why nothing can be played; `what()` is the user's sentence.
class PlaybackError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A stream from a queue to the default audio output, wherever that is at the time. Capture leaves it out. One thread
/// at a time.
class PlaybackOutput {
public:
    /// Connects to the sound system, in some hundredths of a second, at most some seconds where it does not answer.
    /// Throws PlaybackError.
    explicit PlaybackOutput(PlaybackQueue& queue);
    PlaybackOutput(const PlaybackOutput&) = delete;
    PlaybackOutput& operator=(const PlaybackOutput&) = delete;
    ~PlaybackOutput();

    /// To be called some times a second. Throws PlaybackError when the output is lost: with the server at once, with
    /// the last device or whatever led the audio there after some seconds, since devices come and go.
    void check();

private:
    struct Events;

    void connect();
    void close();
    void process();

    PlaybackQueue& queue_;
    SoundConnection connection_;
    pw_stream* stream_ = nullptr;
    spa_hook listener_{};
    /// The HostClock's times at which the stream was last seen to lead to an output, and last asked for audio.
    double lastLinked_ = 0;
    std::atomic<double> lastAsked_ = 0;
};

} // namespace varnic
