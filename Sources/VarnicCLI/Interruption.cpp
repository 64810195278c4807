#include "VarnicCLI/Interruption.h"

#include <csignal>
#include <utility>

#include <pthread.h>

namespace varnic::cli {

namespace {

sigset_t watchedSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    struct sigaction hangUp{};
    sigaction(SIGHUP, nullptr, &hangUp);
    if (hangUp.sa_handler != SIG_IGN) { // as nohup sets it, for what shall outlive its terminal
        sigaddset(&signals, SIGHUP);
    }
    return signals;
}

} // namespace

Interruption::Interruption() {
    const sigset_t signals = watchedSignals();
    pthread_sigmask(SIG_BLOCK, &signals, &before_);
    watcher_ = std::jthread([this, signals](const std::stop_token& end) {
        bool isHungUp = false;
        while (!end.stop_requested()) {
            int signal = 0;
            sigwait(&signals, &signal);
            // A closed terminal is told by the shell and by the system, and is no wish to hurry.
            const bool isRepeated = signal == SIGHUP && std::exchange(isHungUp, true);
            if (!end.stop_requested() && !isRepeated) {
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
