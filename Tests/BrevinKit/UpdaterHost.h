#pragma once

#include "BrevinKit/Updater/Updater.h"

#include <QCoreApplication>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace brevin {

/// The program around an updater: threads, and a main loop that is run by hand.
class UpdaterHost {
public:
    Updater::Host host() {
        return {.inBackground = [this](Updater::Work work) { start(std::move(work)); },
                .onMainThread = [this](Updater::Work work) { post(std::move(work)); },
                .openWindow = [this] { opened(); },
                .openURL = [this](const std::string& url) { urls.push_back(url); },
                .terminate = [this] { ++terminations; }};
    }

    /// Runs the loop until the condition holds; false where it does not within half a minute.
    template <typename Condition>
    bool waitUntil(Condition condition) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (!condition()) {
            if (std::chrono::steady_clock::now() > end) {
                return false;
            }
            runOnce();
        }
        return true;
    }

    /// Nothing is under way, and nothing has come back that was not taken.
    bool isIdle() {
        const std::lock_guard guard(lock_);
        return running_ == 0 && waiting_.empty();
    }

    std::function<void()> opened = [] {};
    std::vector<std::string> urls;
    int terminations = 0;

private:
    void start(Updater::Work work) {
        {
            const std::lock_guard guard(lock_);
            ++running_;
        }
        threads_.emplace_back([this, work = std::move(work)]() mutable {
            work();
            const std::lock_guard guard(lock_);
            --running_;
            changed_.notify_all();
        });
    }

    void post(Updater::Work work) {
        const std::lock_guard guard(lock_);
        waiting_.push_back(std::move(work));
        changed_.notify_all();
    }

    void runOnce() {
        std::deque<Updater::Work> due;
        {
            std::unique_lock guard(lock_);
            changed_.wait_for(guard, std::chrono::milliseconds(10), [this] { return !waiting_.empty(); });
            due = std::exchange(waiting_, {});
        }
        for (Updater::Work& work : due) {
            work();
        }
        QCoreApplication::processEvents();
    }

    std::mutex lock_;
    std::condition_variable changed_;
    std::deque<Updater::Work> waiting_;
    int running_ = 0;
    std::vector<std::jthread> threads_;
};

} // namespace brevin
