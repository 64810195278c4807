#include "VarnicCLI/Interruption.h"

#include <csignal>

#include <pthread.h>

namespace varnic::cli {

namespace {

sigset_t watchedSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    return signals;
}

} // namespace

Interruption::Interruption() {
    const sigset_t signals = watchedSignals();
    pthread_sigmask(SIG_BLOCK, &signals, &before_);
    watcher_ = std::jthread([this, signals](const std::stop_token& end) {
        while (!end.stop_requested()) {
            int signal = 0;
            sigwait(&signals, &signal);
            if (!end.stop_requested()) {
                ++count_;
                stop_.request_stop();
            }
        }
    });
}

Interruption::~Interruption() {
    watcher_.request_stop();
    pthread_kill(watcher_.native_handle(), SIGTERM); // Which wakes it up.
    watcher_.join();
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

} // namespace varnic::cli
