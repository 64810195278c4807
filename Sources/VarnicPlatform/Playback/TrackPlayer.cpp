#include "VarnicPlatform/Playback/TrackPlayer.h"

#include "VarnicCore/Audio/CaptureError.h"
#include "VarnicCore/Audio/CaptureSource.h"
#include "VarnicPlatform/Playback/PlaybackOutput.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <utility>

namespace varnic {

namespace {

constexpr int rate = PlaybackQueue::rate;
/// Frames that wait for the sound system, so that a busy machine is not heard.
constexpr std::size_t ahead = rate / 2;
constexpr std::chrono::milliseconds interval{50};
constexpr double slowest = 0.5;
constexpr double fastest = 2;

/// A stretch without the lock.
class Unlocked {
public:
    explicit Unlocked(std::unique_lock<std::mutex>& lock) : lock_(lock) { lock_.unlock(); }

    Unlocked(const Unlocked&) = delete;
    Unlocked& operator=(const Unlocked&) = delete;

    ~Unlocked() { lock_.lock(); }

private:
    std::unique_lock<std::mutex>& lock_;
};

double secondsOf(std::int64_t frames) {
    return static_cast<double>(frames) / rate;
}

} // namespace

TrackPlayer::TrackPlayer(std::function<void(Event)> observer)
    : observer_(std::move(observer)), thread_([this](const std::stop_token& stop) { run(stop); }) {}

TrackPlayer::~TrackPlayer() = default;

void TrackPlayer::load(std::vector<std::filesystem::path> tracks) {
    take(std::move(tracks), true);
}

void TrackPlayer::stop() {
    take({}, false);
}

void TrackPlayer::take(std::vector<std::filesystem::path> tracks, bool isLoading) {
    const std::scoped_lock lock(lock_);
    isLoading_ = isLoading;
    toLoad_ = std::move(tracks);
    length_ = 0;
    isPlaying_ = false;
    problem_.clear();
    moveTo(0);
}

void TrackPlayer::play() {
    const std::scoped_lock lock(lock_);
    if (isPlaying_ || (length_ == 0 && !isLoading_)) {
        return;
    }
    if (length_ > 0 && place_.start() >= length_) {
        moveTo(0);
    }
    problem_.clear();
    isPlaying_ = true;
    changed_.notify_all();
}

void TrackPlayer::pause() {
    const std::scoped_lock lock(lock_);
    if (isPlaying_) {
        halt();
    }
}

void TrackPlayer::seek(double seconds) {
    const std::scoped_lock lock(lock_);
    if (length_ > 0 || isLoading_) {
        const double end = length_ > 0 ? static_cast<double>(length_) : std::numeric_limits<std::int32_t>::max();
        const double frame = std::isnan(seconds) ? 0 : std::clamp(std::round(seconds * rate), 0.0, end);
        moveTo(static_cast<std::int64_t>(frame));
    }
}

void TrackPlayer::setSpeed(double speed) {
    const std::scoped_lock lock(lock_);
    speed_ = std::clamp(speed, slowest, fastest);
}

double TrackPlayer::speed() const {
    const std::scoped_lock lock(lock_);
    return speed_;
}

double TrackPlayer::time() const {
    const std::scoped_lock lock(lock_);
    return secondsOf(heard());
}

bool TrackPlayer::available() const {
    return duration() > 0;
}

double TrackPlayer::duration() const {
    const std::scoped_lock lock(lock_);
    return secondsOf(length_);
}

bool TrackPlayer::playing() const {
    const std::scoped_lock lock(lock_);
    return isPlaying_;
}

std::string TrackPlayer::problem() const {
    const std::scoped_lock lock(lock_);
    return problem_;
}

/// The frame of the call that is heard now.
std::int64_t TrackPlayer::heard() const {
    if (!isPlaying_ || length_ == 0) {
        return place_.start();
    }
    // Rounding must not lead past the end.
    return std::min(place_.at(queue_.heard(HostClock::now())), length_);
}

/// What is pushed next is the audio from this frame of the call on.
void TrackPlayer::moveTo(std::int64_t frame) {
    queue_.discard();
    place_.begin(queue_.end(), frame);
    isMoved_ = true;
    changed_.notify_all();
}

void TrackPlayer::halt() {
    moveTo(heard());
    isPlaying_ = false;
}

void TrackPlayer::run(const std::stop_token& stop) {
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

void TrackPlayer::takeTracks(Lock& lock) {
    const std::vector<std::filesystem::path> files = std::move(*toLoad_);
    toLoad_.reset();
    {
        const Unlocked unlocked(lock);
        output_.reset();
        source_ = StretchedSource(PlaybackSource(files));
    }
    if (toLoad_ || !isLoading_) {
        return;
    }
    isLoading_ = false;
    length_ = source_.length();
    isPlaying_ = isPlaying_ && length_ > 0;
    moveTo(std::min(place_.start(), length_));
    tell(Event::loaded, lock);
}

/// Does what is to be done for the next moments of audio, and waits until there is more.
void TrackPlayer::playOn(Lock& lock, const std::stop_token& stop) {
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
void TrackPlayer::fill(Lock& lock) {
    if (!output_) {
        queue_.pop({}, 0); // makes room of what was dropped, which nobody else does now
    }
    while (isToPlay() && queue_.waiting() < ahead && hasRoom()) {
        const std::optional<std::int64_t> from = isMoved_ ? std::optional(place_.start()) : std::nullopt;
        const double speed = speed_;
        isMoved_ = false;
        std::span<const float> samples;
        {
            const Unlocked unlocked(lock);
            if (from) {
                source_.seek(*from);
            }
            samples = source_.read(speed);
        }
        if (isMoved_ || toLoad_) {
            return;
        }
        isFinished_ = samples.empty();
        if (isFinished_) {
            return;
        }
        place_.setSpeed(queue_.end(), speed);
        queue_.push(samples);
    }
}

/// Of what was dropped the room comes free when the sound system asks for audio the next time.
bool TrackPlayer::hasRoom() const {
    return queue_.room() > ahead;
}

bool TrackPlayer::hasToMove() const {
    return isMoved_ && hasRoom();
}

void TrackPlayer::openOutput() {
    try {
        output_ = std::make_unique<PlaybackOutput>(queue_);
    } catch (const CaptureError&) {
        throw PlaybackError("PipeWire’s library isn’t installed properly.");
    }
}

void TrackPlayer::fail(const std::string& problem, Lock& lock) {
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

void TrackPlayer::tell(Event event, Lock& lock) const {
    const Unlocked unlocked(lock);
    observer_(event);
}

} // namespace varnic
