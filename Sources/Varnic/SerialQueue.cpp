#include "Varnic/SerialQueue.h"

#include <future>

namespace varnic {

SerialQueue::SerialQueue() : thread_([this] { run(); }) {}

SerialQueue::~SerialQueue() {
    {
        const std::lock_guard guard(lock_);
        isEnding_ = true;
    }
    changed_.notify_one();
    thread_.join();
}

void SerialQueue::async(Work work) {
    {
        const std::lock_guard guard(lock_);
        waiting_.push_back(std::move(work));
    }
    changed_.notify_one();
}

void SerialQueue::sync(Work work) {
    std::promise<void> done;
    async([&] {
        work();
        done.set_value();
    });
    done.get_future().wait();
}

void SerialQueue::run() {
    std::unique_lock guard(lock_);
    while (true) {
        changed_.wait(guard, [&] { return isEnding_ || !waiting_.empty(); });
        if (waiting_.empty()) {
            return;
        }
        Work work = std::move(waiting_.front());
        waiting_.pop_front();
        guard.unlock();
        work();
        // What the work holds may end with it, and that may take its time.
        work = nullptr;
        guard.lock();
    }
}

} // namespace varnic
