#include "VarnicPlatform/Desktop/DesktopEvents.h"

#include <systemd/sd-event.h>

#include <system_error>

namespace varnic {

DesktopEvents::DesktopEvents() {
    sd_event* loop = nullptr;
    if (const int result = sd_event_new(&loop); result < 0) {
        throw std::system_error(-result, std::system_category());
    }
    loop_.reset(loop);
}

int DesktopEvents::descriptor() const {
    return sd_event_get_fd(loop_.get());
}

void DesktopEvents::dispatch() {
    // The last round finds nothing, and prepares the descriptor for what is awaited now.
    while (sd_event_run(loop_.get(), 0) > 0) {
    }
}

void DesktopEvents::Unref::operator()(sd_event* loop) const {
    sd_event_unref(loop);
}

} // namespace varnic
