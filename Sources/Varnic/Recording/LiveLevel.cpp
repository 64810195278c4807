#include "Varnic/Recording/LiveLevel.h"

#include "Varnic/Background.h"
#include "Varnic/Recording/LevelBox.h"
#include "VarnicCore/Audio/CaptureError.h"
#include "VarnicCore/Audio/TrackWriter.h"
#include "VarnicPlatform/Capture/LiveCapture.h"
#include "VarnicPlatform/Capture/SoundDevices.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace varnic {

namespace {

using namespace std::chrono_literals;

constexpr auto interval = 50ms;

} // namespace

/// What goes on from a start to a stop, on other threads too.
struct LiveLevel::Session {
    explicit Session(const CaptureDevices& devices) : capture(devices) {}

    /// Listens until it is to stop.
    void run(Speaker side) {
        open(side);
        std::unique_lock held(lock);
        isOver.wait(held, [this] { return mustStop; });
        held.unlock();
        capture.stop();
    }

    void stop() {
        const std::scoped_lock guard(lock);
        mustStop = true;
        isOver.notify_one();
    }

    void open(Speaker side) {
        const WantedSides wanted{.you = side == Speaker::you, .them = side == Speaker::them};
        try {
            capture.start(HostClock::now(), wanted, [this](Speaker speaker, const PcmBuffer& sound, double /*at*/) {
                levels.set(speaker, soundLevel(sound));
            });
        } catch (const CaptureError& error) {
            const std::scoped_lock guard(lock);
            problem = error.what();
        }
    }

    [[nodiscard]] std::optional<std::string> words() const {
        const std::scoped_lock guard(lock);
        return problem ? problem : capture.notice();
    }

    LiveCapture capture;
    LevelBox levels;
    mutable std::mutex lock;
    std::optional<std::string> problem;
    bool mustStop = false;
    std::condition_variable isOver;
};

LiveLevel::LiveLevel(Speaker side, QObject* parent) : QObject(parent), side_(side) {
    timer_.setInterval(interval);
    connect(&timer_, &QTimer::timeout, this, &LiveLevel::tick);
}

LiveLevel::~LiveLevel() {
    stop();
}

void LiveLevel::start(const CaptureDevices& devices) {
    stop();
    if (SoundDevices::override) {
        return; // they can't be listened to
    }
    session_ = std::make_shared<Session>(devices);
    // A device may take seconds to open.
    Background::start([session = session_, side = side_] { session->run(side); });
    timer_.start();
}

void LiveLevel::stop() {
    timer_.stop();
    if (session_) {
        std::exchange(session_, nullptr)->stop();
    }
    level = 0;
    notice = std::nullopt;
}

void LiveLevel::tick() {
    const InkSample now = session_->levels.tick();
    level = side_ == Speaker::you ? now.you : now.them;
    notice = session_->words();
}

} // namespace varnic
