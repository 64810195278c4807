#include "VarnicPlatform/Capture/SoundConnection.h"

#include "VarnicCore/Audio/CaptureError.h"
#include "VarnicCore/Audio/CaptureSource.h"
#include "VarnicPlatform/Capture/ApplicationName.h"

#include <cerrno>
#include <cstdlib>
#include <mutex>

namespace varnic {

struct SoundConnection::Events {
    static constexpr pw_core_events core{
        .version = PW_VERSION_CORE_EVENTS,
        .done =
            [](void* data, std::uint32_t id, int sequence) {
                if (id == PW_ID_CORE) {
                    static_cast<SoundConnection*>(data)->answered_ = sequence;
                }
            },
        .error =
            [](void* data, std::uint32_t id, int /*sequence*/, int result, const char* /*message*/) {
                // All others concern one object, such as a program that has just gone.
                if (id == PW_ID_CORE && result == -EPIPE) {
                    static_cast<SoundConnection*>(data)->isLost_ = true;
                }
            },
    };
};

SoundConnection::SoundConnection(std::function<void()> onChange) : onChange_(std::move(onChange)) {
    static std::once_flag initialised;
    std::call_once(initialised, [] {
        pw_init(nullptr, nullptr);
        // What goes wrong is said in our own words; the library's would stand in between on a terminal.
        if (std::getenv("PIPEWIRE_DEBUG") == nullptr) {
            pw_log_set_level(SPA_LOG_LEVEL_NONE);
        }
    });
    loop_.reset(pw_thread_loop_new("varnic-sound", nullptr));
    if (loop_) {
        // With this configuration the audio's own thread has real-time priority, where the system grants it: without,
        // a busy computer may leave holes in what is recorded.
        context_.reset(pw_context_new(pw_thread_loop_get_loop(loop_.get()),
                                      pw_properties_new(PW_KEY_CONFIG_NAME, "client-rt.conf", PW_KEY_APP_NAME,
                                                        applicationName, PW_KEY_APP_ID, applicationId,
                                                        PW_KEY_APP_ICON_NAME, applicationId, nullptr),
                                      0));
    }
    if (!context_ || pw_thread_loop_start(loop_.get()) < 0) {
        throw CaptureError::systemAudioFailed(
            "PipeWire’s configuration for programs can’t be read; on Debian it is in the package pipewire-bin.");
    }
}

SoundConnection::~SoundConnection() {
    pw_thread_loop_stop(loop_.get());
    stopTicking();
    close();
}

bool SoundConnection::open() {
    isLost_ = false;
    answered_ = 0;
    asked_ = 0;
    core_ = pw_context_connect(context_.get(), nullptr, 0);
    if (core_ == nullptr) {
        return false;
    }
    pw_core_add_listener(core_, &listener_, &Events::core, this);
    graph_ = std::make_unique<SoundGraph>(core_, onChange_);
    return true;
}

void SoundConnection::close() {
    graph_.reset();
    if (core_ != nullptr) {
        spa_hook_remove(&listener_);
        pw_core_disconnect(core_);
        core_ = nullptr;
    }
}

bool SoundConnection::waitFor(const std::function<bool()>& condition, double seconds) const {
    const double end = HostClock::now() + seconds;
    while (!condition()) {
        if (HostClock::now() > end) {
            return false;
        }
        timespec next{};
        pw_thread_loop_get_time(loop_.get(), &next, 5 * SPA_NSEC_PER_MSEC);
        pw_thread_loop_timed_wait_full(loop_.get(), &next);
    }
    return true;
}

bool SoundConnection::settle(double seconds) {
    // The first answer comes behind the list of objects, the second behind what was asked of them on hearing of it.
    for (int round = 0; round < 2; ++round) {
        const int asked = pw_core_sync(core_, PW_ID_CORE, answered_);
        if (!waitFor([&] { return answered_ == asked || isLost_; }, seconds) || isLost_) {
            return false;
        }
    }
    return true;
}

void SoundConnection::ask() {
    asked_ = pw_core_sync(core_, PW_ID_CORE, answered_);
}

void SoundConnection::every(double seconds, std::function<void()> function) {
    onTick_ = std::move(function);
    pw_loop* loop = pw_thread_loop_get_loop(loop_.get());
    timer_ = pw_loop_add_timer(
        loop, [](void* data, std::uint64_t /*expirations*/) { static_cast<SoundConnection*>(data)->onTick_(); }, this);
    timespec interval{.tv_sec = 0, .tv_nsec = static_cast<long>(seconds * SPA_NSEC_PER_SEC)};
    pw_loop_update_timer(loop, timer_, &interval, &interval, false);
}

void SoundConnection::stopTicking() {
    if (timer_ != nullptr) {
        pw_loop_destroy_source(pw_thread_loop_get_loop(loop_.get()), timer_);
        timer_ = nullptr;
    }
}

} // namespace varnic
