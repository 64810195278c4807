#include "Varnic/Inbox.h"

#include <QCoreApplication>
#include <QPointer>

#include <sys/eventfd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace varnic {

// One ring a piece of work: a loop that runs inside of one goes on with those behind it.
Inbox::Inbox(QObject* parent)
    : QObject(parent), bell_(::eventfd(0, EFD_SEMAPHORE | EFD_NONBLOCK | EFD_CLOEXEC)),
      notifier_(bell_.number(), QSocketNotifier::Read) {
    if (!bell_.isOpen()) {
        throw std::system_error(errno, std::generic_category());
    }
    connect(&notifier_, &QSocketNotifier::activated, this, [this] { doNext(); });
}

Inbox& Inbox::main() {
    static QPointer<Inbox> inbox;
    if (!inbox) {
        inbox = new Inbox(QCoreApplication::instance());
    }
    return *inbox;
}

void Inbox::post(Work work) {
    const std::lock_guard guard(lock_);
    waiting_.push_back(std::move(work));
    ::eventfd_write(bell_.number(), 1);
}

void Inbox::deliver() {
    const QPointer self(this);
    while (self && doNext()) {
    }
}

bool Inbox::doNext() {
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
