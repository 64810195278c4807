#pragma once

#include "VarnicCore/Files/FileDescriptor.h"

#include <QSocketNotifier>

#include <functional>
#include <utility>

namespace varnic {

/// Turns, as long as it lives, a polite kill, an interrupt and the end of the terminal (SIGTERM, SIGINT, SIGHUP) into a
/// call on the main thread, so that the program ends in its order; one whose output nobody reads any more (SIGPIPE)
/// goes on. One at a time.
class TerminationSignals {
public:
    explicit TerminationSignals(std::function<void()> terminate);
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    ~TerminationSignals();

private:
    /// The reading and the writing end.
    explicit TerminationSignals(std::pair<FileDescriptor, FileDescriptor> pipe);

    FileDescriptor reader_;
    FileDescriptor writer_;
    QSocketNotifier notifier_;
};

} // namespace varnic
