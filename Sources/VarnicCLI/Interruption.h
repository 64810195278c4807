#pragma once

#include <atomic>
#include <stop_token>
#include <thread>

#include <signal.h>

namespace varnic::cli {

/// Turns, as long as it lives, an interrupt, a polite kill or a closed terminal into a request to stop, so that no
/// half-done work is left behind. Make it before the threads that do the work, which then leave the signals to it.
class Interruption {
public:
    Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;
    ~Interruption();

    [[nodiscard]] std::stop_token token() const { return stop_.get_token(); }

    [[nodiscard]] bool happened() const { return count() > 0; }

    /// How often it happened.
    [[nodiscard]] int count() const { return count_; }

private:
    std::stop_source stop_;
    std::atomic<int> count_ = 0;
    sigset_t before_{};
    std::jthread watcher_;
};

} // namespace varnic::cli
