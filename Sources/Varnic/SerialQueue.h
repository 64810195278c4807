#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace varnic {

/// A thread that does one piece of work after another, in the order they come. The destructor does all that is waiting.
/// Any thread may call.
class SerialQueue {
public:
    using Work = std::move_only_function<void()>;

    SerialQueue();
    SerialQueue(const SerialQueue&) = delete;
    SerialQueue& operator=(const SerialQueue&) = delete;
    ~SerialQueue();

    /// Does the work once everything before it is done. It must not throw.
    void async(Work work);

    /// Waits until everything before it and the work itself are done. Not to be called on the queue.
    void sync(Work work);

private:
    void run();

    std::mutex lock_;
    std::condition_variable changed_;
    std::deque<Work> waiting_;
    bool isEnding_ = false;
    std::thread thread_;
};

} // namespace varnic
