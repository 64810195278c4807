#pragma once

#include "VarnicCore/Files/FileDescriptor.h"

#include <QObject>
#include <QSocketNotifier>

#include <deque>
#include <functional>
#include <mutex>

namespace varnic {

/// Runs work of other threads on the thread that made it, in that thread's event loop. The work is handed over under a
/// mutex of our own: that of Qt's queue is invisible to the thread sanitizer, which therefore would miss races or see
/// some where there are none.
class LoopExecutor : public QObject {
public:
    using Work = std::move_only_function<void()>;

    /// Throws std::system_error where the system has no descriptor left for it.
    explicit LoopExecutor(QObject* parent = nullptr);

    /// That of the main thread. To be called there, while there is a QCoreApplication.
    static LoopExecutor& main();

    /// Runs the work in its turn, unless the executor is gone by then. Any thread.
    void post(Work work);

    /// Runs what is pending at once, without a turn of the event loop.
    void runPending();

private:
    bool doNext();

    /// Counts the pending work.
    FileDescriptor bell_;
    QSocketNotifier notifier_;
    std::mutex lock_;
    std::deque<Work> waiting_;
};

} // namespace varnic
