#include "Varnic/LoopExecutor.h"

#include <QCoreApplication>
#include <QPointer>

#include <sys/eventfd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace varnic {

// One ring a piece of work: a loop that runs inside of one goes on with those behind it.
LoopExecutor::LoopExecutor(QObject* parent)
    : QObject(parent), bell_(::eventfd(0, EFD_SEMAPHORE | EFD_NONBLOCK | EFD_CLOEXEC)),
      notifier_(bell_.number(), QSocketNotifier::Read) {
    if (!bell_.isOpen()) {
        throw std::system_error(errno, std::generic_category());
    }
    connect(&notifier_, &QSocketNotifier::activated, this, [this] { doNext(); });
}

LoopExecutor& LoopExecutor::main() {
    static QPointer<LoopExecutor> loop;
    if (!loop) {
        loop = new LoopExecutor(QCoreApplication::instance());
    }
    return *loop;
}

void LoopExecutor::post(Work work) {
    const std::lock_guard guard(lock_);
    waiting_.push_back(std::move(work));
    ::eventfd_write(bell_.number(), 1);
}

void LoopExecutor::runPending() {
    const QPointer self(this);
    while (self && doNext()) {
    }
}

bool LoopExecutor::doNext() {
    Work work;
    {
        const std::lock_guard guard(lock_);
        eventfd_t one = 0;
        if (waiting_.empty() || ::eventfd_read(bell_.number(), &one) != 0) {
            return false;
        }
        work = std::move(waiting_.front());
        waiting_.pop_front();
    }
    work();
    return true;
}

} // namespace varnic
