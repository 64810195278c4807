#include "VarnicPlatform/Playback/TrackPlayer.h"

#include "VarnicCore/Audio/CaptureError.h"
#include "VarnicCore/Audio/CaptureSource.h"
#include "VarnicPlatform/Playback/PlaybackOutput.h"
#include "VarnicPlatform/Playback/PlaybackQueue.h"
#include "VarnicPlatform/Playback/PlaybackSource.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <cstdint>
#include <limits>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace varnic {

namespace {

constexpr int rate = PlaybackQueue::rate;
/// Frames that wait for the sound system, so that a busy machine is not heard.
constexpr std::size_t ahead = rate / 2;
constexpr std::chrono::milliseconds interval{50};

} // namespace

/// The state, which the owner changes, and the thread that makes it come true.
class TrackPlayer::Engine {
public:
    explicit Engine(std::function<void(Event)> observer)
        : observer_(std::move(observer)), thread_([this](const std::stop_token& stop) { run(stop); }) {}

    void load(std::optional<std::vector<std::filesystem::path>> tracks) {
        const std::scoped_lock lock(lock_);
        isLoading_ = tracks.has_value();
        toLoad_ = tracks ? std::move(*tracks) : std::vector<std::filesystem::path>();
        length_ = 0;
        isPlaying_ = false;
        problem_.clear();
        moveTo(0);
    }

    void play() {
        const std::scoped_lock lock(lock_);
        if (isPlaying_ || (length_ == 0 && !isLoading_)) {
            return;
        }
        if (length_ > 0 && place_ >= length_) {
            moveTo(0);
        }
        problem_.clear();
        isPlaying_ = true;
        changed_.notify_all();
    }

    void pause() {
        const std::scoped_lock lock(lock_);
        if (isPlaying_) {
            halt();
        }
    }

    void seek(double seconds) {
        const std::scoped_lock lock(lock_);
        if (length_ > 0 || isLoading_) {
            const double end = length_ > 0 ? static_cast<double>(length_) : std::numeric_limits<std::int32_t>::max();
            const double frame = std::isnan(seconds) ? 0 : std::clamp(std::round(seconds * rate), 0.0, end);
            moveTo(static_cast<std::int64_t>(frame));
        }
    }

    [[nodiscard]] double time() const {
        const std::scoped_lock lock(lock_);
        return secondsOf(heard());
    }

    [[nodiscard]] double duration() const {
        const std::scoped_lock lock(lock_);
        return secondsOf(length_);
    }

    [[nodiscard]] bool playing() const {
        const std::scoped_lock lock(lock_);
        return isPlaying_;
    }

    [[nodiscard]] std::string problem() const {
        const std::scoped_lock lock(lock_);
        return problem_;
    }

private:
    using Lock = std::unique_lock<std::mutex>;

    /// A stretch without the lock.
    class Unlocked {
    public:
        explicit Unlocked(Lock& lock) : lock_(lock) { lock_.unlock(); }

        Unlocked(const Unlocked&) = delete;
        Unlocked& operator=(const Unlocked&) = delete;

        ~Unlocked() { lock_.lock(); }

    private:
        Lock& lock_;
    };

    static double secondsOf(std::int64_t frames) { return static_cast<double>(frames) / rate; }

    // With the lock held

    /// The frame of the call that is heard now.
    [[nodiscard]] std::int64_t heard() const {
        return isPlaying_ ? place_ + queue_.heard(HostClock::now()) - placeInQueue_ : place_;
    }

    /// What is pushed next is the sound from this frame of the call on.
    void moveTo(std::int64_t frame) {
        queue_.discard();
        placeInQueue_ = queue_.end();
        place_ = frame;
        isMoved_ = true;
        changed_.notify_all();
    }

    void halt() {
        moveTo(heard());
        isPlaying_ = false;
    }

    [[nodiscard]] bool isToPlay() const { return isPlaying_ && length_ > 0; }

    // The thread

    void run(const std::stop_token& stop) {
        Lock lock(lock_);
        while (!stop.stop_requested()) {
            if (toLoad_) {
                takeTracks(lock);
            } else if (isToPlay()) {
                try {
                    playOn(lock, stop);
                } catch (const PlaybackError& error) {
                    fail(error.what(), lock);
                }
            } else if (output_) {
                const Unlocked unlocked(lock);
                output_.reset();
            } else {
                changed_.wait(lock, stop, [this] { return toLoad_ || isToPlay(); });
            }
        }
    }

    void takeTracks(Lock& lock) {
        const std::vector<std::filesystem::path> files = std::move(*toLoad_);
        toLoad_.reset();
        {
            const Unlocked unlocked(lock);
            output_.reset();
            source_ = PlaybackSource(files);
        }
        if (toLoad_ || !isLoading_) {
            return;
        }
        isLoading_ = false;
        length_ = source_.length();
        isPlaying_ = isPlaying_ && length_ > 0;
        moveTo(std::min(place_, length_));
        tell(Event::loaded, lock);
    }

    /// Does what is to be done for the next moments of sound, and waits until there is more.
    void playOn(Lock& lock, const std::stop_token& stop) {
        fill(lock);
        if (!isToPlay() || toLoad_ || hasToMove()) {
            return;
        }
        if (!output_) {
            const Unlocked unlocked(lock);
            openOutput();
        } else if (isFinished_ && !isMoved_ && queue_.heard(HostClock::now()) >= queue_.end()) {
            moveTo(length_);
            isPlaying_ = false;
            tell(Event::ended, lock);
        } else {
            output_->check();
            changed_.wait_for(lock, stop, interval, [this] { return toLoad_ || !isPlaying_ || hasToMove(); });
        }
    }

    /// Decodes until enough waits in the queue or the owner wants something else.
    void fill(Lock& lock) {
        if (!output_) {
            queue_.pop({}, 0); // makes room of what was dropped, which nobody else does now
        }
        while (isToPlay() && queue_.waiting() < ahead && hasRoom()) {
            const std::optional<std::int64_t> from = isMoved_ ? std::optional(place_) : std::nullopt;
            isMoved_ = false;
            std::span<const float> samples;
            {
                const Unlocked unlocked(lock);
                if (from) {
                    source_.seek(*from);
                }
                samples = source_.read();
            }
            if (isMoved_ || toLoad_) {
                return;
            }
            isFinished_ = samples.empty();
            if (isFinished_) {
                return;
            }
            queue_.push(samples);
        }
    }

    /// Of what was dropped the room comes free when the sound system asks for sound the next time.
    [[nodiscard]] bool hasRoom() const { return queue_.room() > ahead; }

    [[nodiscard]] bool hasToMove() const { return isMoved_ && hasRoom(); }

    void openOutput() {
        try {
            output_.emplace(queue_);
        } catch (const CaptureError&) {
            throw PlaybackError("PipeWire’s library isn’t installed properly.");
        }
    }

    void fail(const std::string& problem, Lock& lock) {
        if (!isPlaying_) {
            return; // the owner no longer asks for it
        }
        halt();
        problem_ = problem;
        {
            const Unlocked unlocked(lock);
            output_.reset();
        }
        tell(Event::failed, lock);
    }

    void tell(Event event, Lock& lock) const {
        const Unlocked unlocked(lock);
        observer_(event);
    }

    const std::function<void(Event)> observer_;
    mutable std::mutex lock_;
    std::condition_variable_any changed_;

    // Under the lock
    std::optional<std::vector<std::filesystem::path>> toLoad_;
    bool isLoading_ = false;
    bool isPlaying_ = false;
    /// Whether the source is elsewhere than the queue goes on.
    bool isMoved_ = false;
    /// Frames of the call; 0 while there is nothing to play.
    std::int64_t length_ = 0;
    /// The frame of the call at `placeInQueue_`, which is where the kept part of the queue begins.
    std::int64_t place_ = 0;
    std::int64_t placeInQueue_ = 0;
    std::string problem_;

    // The thread's own; of the queue, `pop` and `heard` need no lock
    PlaybackQueue queue_;
    PlaybackSource source_;
    bool isFinished_ = false;
    std::optional<PlaybackOutput> output_;
    std::jthread thread_;
};

TrackPlayer::TrackPlayer(std::function<void(Event)> observer)
    : engine_(std::make_unique<Engine>(std::move(observer))) {}

TrackPlayer::~TrackPlayer() = default;

void TrackPlayer::load(std::vector<std::filesystem::path> tracks) {
    engine_->load(std::move(tracks));
}

void TrackPlayer::play() {
    engine_->play();
}

void TrackPlayer::pause() {
    engine_->pause();
}

void TrackPlayer::seek(double seconds) {
    engine_->seek(seconds);
}

void TrackPlayer::stop() {
    engine_->load(std::nullopt);
}

double TrackPlayer::time() const {
    return engine_->time();
}

bool TrackPlayer::playing() const {
    return engine_->playing();
}

bool TrackPlayer::available() const {
    return engine_->duration() > 0;
}

double TrackPlayer::duration() const {
    return engine_->duration();
}

std::string TrackPlayer::problem() const {
    return engine_->problem();
}

} // namespace varnic
