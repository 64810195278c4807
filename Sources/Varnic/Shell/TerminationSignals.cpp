#include "Varnic/Shell/TerminationSignals.h"

#include <QObject>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

namespace varnic {

namespace {

constexpr std::array watched{SIGTERM, SIGINT, SIGHUP};

/// Where the handler writes: all that it may do.
std::atomic<int> wakeDescriptor = -1;

extern "C" void onTerminationSignal(int /*signal*/) {
    const int before = errno;
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = ::write(wakeDescriptor, &byte, 1);
    errno = before;
}

/// Unlike SIG_IGN it is not passed on to the programs that are started.
extern "C" void letPass(int /*signal*/) {}

void setHandler(int signal, void (*handler)(int)) {
    struct sigaction action{};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
}

void setHandlers(void (*terminate)(int), void (*pass)(int)) {
    for (const int signal : watched) {
        setHandler(signal, terminate);
    }
    setHandler(SIGPIPE, pass);
}

std::pair<FileDescriptor, FileDescriptor> makePipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        throw std::system_error(errno, std::system_category());
    }
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> terminate) : TerminationSignals(makePipe()) {
    QObject::connect(&notifier_, &QSocketNotifier::activated, [this, terminate = std::move(terminate)] {
        std::array<char, 16> bytes{};
        while (::read(reader_.number(), bytes.data(), bytes.size()) > 0) {
        }
        terminate();
    });
}

TerminationSignals::TerminationSignals(std::pair<FileDescriptor, FileDescriptor> pipe)
    : reader_(std::move(pipe.first)), writer_(std::move(pipe.second)),
      notifier_(reader_.number(), QSocketNotifier::Read) {
    wakeDescriptor = writer_.number();
    setHandlers(onTerminationSignal, letPass);
}

TerminationSignals::~TerminationSignals() {
    setHandlers(SIG_DFL, SIG_DFL);
    wakeDescriptor = -1;
}

} // namespace varnic
