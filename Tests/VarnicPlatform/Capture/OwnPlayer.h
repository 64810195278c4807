#pragma once

#include "VarnicPlatform/Capture/Recorder.h"

#include <pipewire/pipewire.h>

#include <atomic>

namespace varnic {

/// Plays a sine out of this very process.
class OwnPlayer {
public:
    explicit OwnPlayer(double frequency);
    OwnPlayer(const OwnPlayer&) = delete;
    OwnPlayer& operator=(const OwnPlayer&) = delete;
    ~OwnPlayer();

    [[nodiscard]] bool comesToPlay() const {
        return comes([this] { return frames_ > 4800; });
    }

private:
    void process();

    double frequency_;
    std::atomic<std::int64_t> frames_ = 0;
    pw_thread_loop* loop_;
    pw_stream* stream_ = nullptr;
};

} // namespace varnic
