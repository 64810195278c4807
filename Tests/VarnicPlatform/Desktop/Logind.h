#pragma once

#include "VarnicCore/Files/FileDescriptor.h"
#include "VarnicPlatform/Desktop/BusService.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <string>

namespace varnic {

/// The service of logind, as far as sleep goes: a test machine can't be sent to sleep.
class Logind {
public:
    explicit Logind(DesktopEvents& events)
        : events_(events),
          service_(events, "org.freedesktop.login1", [this](sd_bus_message* call) { return answer(call); }) {}

    /// What was asked to be delayed, by whom, and how; empty before.
    std::array<std::string, 3> asked;
    bool refuses = false;

    /// Whether somebody holds up the sleep: the other end of what was given out is open.
    [[nodiscard]] bool isHeld() {
        char byte = 0;
        return reader_.isOpen() && ::read(reader_.number(), &byte, 1) < 0;
    }

    /// Waits until nobody does; false where somebody still does after half a minute.
    [[nodiscard]] bool comesToBeLetGo() {
        std::array<pollfd, 2> readable{pollfd{.fd = reader_.number(), .events = POLLIN, .revents = 0},
                                       pollfd{.fd = events_.descriptor(), .events = POLLIN, .revents = 0}};
        while (isHeld()) {
            if (::poll(readable.data(), readable.size(), 30'000) <= 0) {
                return false;
            }
            events_.dispatch();
        }
        return true;
    }

    void prepareForSleep(bool begins) {
        sd_bus_emit_signal(service_.bus(), "/org/freedesktop/login1", "org.freedesktop.login1.Manager",
                           "PrepareForSleep", "b", begins ? 1 : 0);
        events_.dispatch();
    }

private:
    bool answer(sd_bus_message* call) {
        const char* what = nullptr;
        const char* who = nullptr;
        const char* why = nullptr;
        const char* mode = nullptr;
        if (sd_bus_message_is_method_call(call, "org.freedesktop.login1.Manager", "Inhibit") <= 0 ||
            sd_bus_message_read(call, "ssss", &what, &who, &why, &mode) <= 0) {
            return false;
        }
        asked = {what, who, mode};
        if (refuses) {
            return false;
        }
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
            return false;
        }
        reader_ = FileDescriptor(ends[0]);
        const FileDescriptor given(ends[1]);
        sd_bus_reply_method_return(call, "h", given.number());
        return true;
    }

    DesktopEvents& events_;
    FileDescriptor reader_ = FileDescriptor(-1);
    BusService service_;
};

} // namespace varnic
