#pragma once

#include "VarnicCore/Files/FileDescriptor.h"

#include <QObject>
#include <QSocketNotifier>

#include <deque>
#include <functional>
#include <mutex>

namespace varnic {

/// Brings work from other threads to the one that made it, through that thread's event loop. A lock of our own hands
/// the work over, where Qt's queue has one that the thread sanitizer cannot see, so that it finds what is not handed
/// over.
class Inbox : public QObject {
public:
    using Work = std::move_only_function<void()>;

    /// Throws std::system_error where the system has no descriptor left for it.
    explicit Inbox(QObject* parent = nullptr);

    /// The application's, for its main thread. To be called there, while there is a QCoreApplication.
    static Inbox& main();

    /// Has the work done in its turn, unless the inbox is gone by then. Any thread.
    void post(Work work);

    /// Does what waits without going round the event loop.
    void deliver();

private:
    bool doNext();

    /// Counts the work that waits.
    FileDescriptor bell_;
    QSocketNotifier notifier_;
    std::mutex lock_;
    std::deque<Work> waiting_;
};

} // namespace varnic
