#pragma once

#include "VarnicPlatform/Playback/PlaybackPlace.h"
#include "VarnicPlatform/Playback/PlaybackQueue.h"
#include "VarnicPlatform/Playback/StretchedSource.h"

#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

namespace varnic {

class PlaybackOutput;

/// Plays the tracks of a call through the default audio output, all at once from 0 and none of them mixed on disk.
/// Every operation returns at once; files, decoding and the sound system are a thread's of its own. All members may be
/// called from any thread, also from within the observer.
class TrackPlayer {
public:
    /// What happened without the owner's doing.
    enum class Event {
        loaded, ///< `available` and `duration` are known.
        ended,  ///< The end was heard: `playing` is false and `time` is `duration`.
        failed, ///< `playing` is false, and `problem` says why.
    };

    /// `observer` is called in the player's thread, with nothing locked, after the state has changed. It must not
    /// destroy the player. An event may come a moment after the `load` or `stop` that made it stale: the state counts.
    explicit TrackPlayer(std::function<void(Event)> observer);
    TrackPlayer(const TrackPlayer&) = delete;
    TrackPlayer& operator=(const TrackPlayer&) = delete;
    /// After it the observer is not called any more. Waits for the player's thread, at most some seconds where the
    /// sound system does not answer.
    ~TrackPlayer();

    /// Takes these files in place of what was loaded, stopped at 0. A file that is not there or cannot be read is left
    /// out. `loaded` follows; `play` and `seek` before it take effect then.
    void load(std::vector<std::filesystem::path> tracks);

    /// Goes on at `time`, or at 0 when it stands at the end. Connects to the sound system anew each time. Nothing
    /// without tracks.
    void play();

    /// Falls silent within a buffer of the sound system. `time` stays.
    void pause();

    /// Goes to a place, exact to the sample, playing on or staying paused; past the ends it is the end. `time` is the
    /// place at once, and no audio from before is heard later than a buffer from now.
    void seek(double seconds);

    /// How many seconds of the call are heard in one, 0.5 to 2; the pitch stays. While it plays it is heard about half
    /// a second later, without a break. Stays for what is loaded next.
    void setSpeed(double speed);

    [[nodiscard]] double speed() const;

    /// Pauses and lets go of the tracks: `available` is false, `time` and `duration` are 0.
    void stop();

    /// The place that is being heard, in seconds from the beginning; between 0 and `duration`.
    [[nodiscard]] double time() const;

    [[nodiscard]] bool playing() const;

    /// Whether there is something to play.
    [[nodiscard]] bool available() const;

    /// Seconds; that of the longest track, 0 while nothing is loaded.
    [[nodiscard]] double duration() const;

    /// Why playing failed, the user's sentence; empty since the last `play`, `load` or `stop`.
    [[nodiscard]] std::string problem() const;

private:
    using Lock = std::unique_lock<std::mutex>;

    // With the lock held

    [[nodiscard]] std::int64_t heard() const;
    void moveTo(std::int64_t frame);
    void halt();
    void take(std::vector<std::filesystem::path> tracks, bool isLoading);

    [[nodiscard]] bool isToPlay() const { return isPlaying_ && length_ > 0; }

    // In the thread, which gives up the lock for everything that takes time

    void run(const std::stop_token& stop);
    void takeTracks(Lock& lock);
    void playOn(Lock& lock, const std::stop_token& stop);
    void fill(Lock& lock);
    void fail(const std::string& problem, Lock& lock);
    void tell(Event event, Lock& lock) const;
    void openOutput();
    [[nodiscard]] bool hasRoom() const;
    [[nodiscard]] bool hasToMove() const;

    const std::function<void(Event)> observer_;
    mutable std::mutex lock_;
    std::condition_variable_any changed_;

    // Under the lock

    std::optional<std::vector<std::filesystem::path>> toLoad_;
    bool isLoading_ = false;
    bool isPlaying_ = false;
    /// Whether the source is elsewhere than the queue is to go on.
    bool isMoved_ = false;
    /// Frames of the call; 0 while there is nothing to play.
    std::int64_t length_ = 0;
    /// Begins where the kept part of the queue does.
    PlaybackPlace place_;
    double speed_ = 1;
    std::string problem_;
    PlaybackQueue queue_;

    // The thread's own

    StretchedSource source_;
    bool isFinished_ = false;
    std::unique_ptr<PlaybackOutput> output_;
    std::jthread thread_;
};

} // namespace varnic
