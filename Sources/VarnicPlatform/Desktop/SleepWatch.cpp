#include "VarnicPlatform/Desktop/SleepWatch.h"

#include <systemd/sd-bus.h>

#include <fcntl.h>

#include <memory>
#include <utility>

namespace varnic {

namespace {

constexpr const char* service = "org.freedesktop.login1";
constexpr const char* path = "/org/freedesktop/login1";
constexpr const char* interface = "org.freedesktop.login1.Manager";

} // namespace

/// The library's callbacks.
struct SleepWatchReplies {
    static int onPrepareForSleep(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
        int begins = 0;
        if (sd_bus_message_read(message, "b", &begins) >= 0) {
            auto* watch = static_cast<SleepWatch*>(self);
            begins != 0 ? watch->sleepBegins() : watch->sleepEnds();
        }
        return 0;
    }

    static int onLock(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
        auto* watch = static_cast<SleepWatch*>(self);
        watch->isAsking_ = false;
        int descriptor = -1;
        if (watch->isDelaying_ && sd_bus_message_is_method_error(message, nullptr) == 0 &&
            sd_bus_message_read(message, "h", &descriptor) >= 0) {
            // The message's own closes with it.
            watch->lock_ = FileDescriptor(::fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
        }
        return 0;
    }
};

SleepWatch::SleepWatch(DesktopEvents& events, WillSleep willSleep)
    : events_(events), bus_(events, BusConnection::Kind::system), willSleep_(std::move(willSleep)) {
    sd_bus_match_signal_async(bus_.get(), nullptr, service, path, interface, "PrepareForSleep",
                              SleepWatchReplies::onPrepareForSleep, nullptr, this);
    events_.dispatch();
}

void SleepWatch::setDelaying(bool isDelaying) {
    isDelaying_ = isDelaying;
    if (isDelaying) {
        takeLock();
    } else if (!isFinishing_) {
        lock_ = FileDescriptor(-1);
    }
}

void SleepWatch::takeLock() {
    if (lock_.isOpen() || isAsking_) {
        return;
    }
    isAsking_ = sd_bus_call_method_async(bus_.get(), nullptr, service, path, interface, "Inhibit",
                                         SleepWatchReplies::onLock, this, "ssss", "sleep", "Varnic",
                                         "A call is being recorded and has to be saved", "delay") >= 0;
    events_.dispatch();
}

void SleepWatch::sleepBegins() {
    if (isFinishing_) {
        return;
    }
    isFinishing_ = true;
    // `done` may come when this is gone.
    willSleep_([self = std::weak_ptr(alive_), this] {
        if (self.expired()) {
            return;
        }
        isFinishing_ = false;
        lock_ = FileDescriptor(-1);
    });
}

void SleepWatch::sleepEnds() {
    // logind gives no lock while it goes to sleep.
    if (isDelaying_) {
        takeLock();
    }
}

} // namespace varnic
