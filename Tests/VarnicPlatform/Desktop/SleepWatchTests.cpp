#include "VarnicPlatform/Desktop/SleepWatch.h"

#include "VarnicPlatform/Desktop/BusService.h"
#include "VarnicPlatform/Desktop/DispatchUntil.h"
#include "VarnicPlatform/Desktop/MessageBus.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <optional>
#include <string>

namespace varnic {
namespace {

/// The service of logind, which no test machine can be without a sleep of its own.
class Logind {
public:
    explicit Logind(DesktopEvents& events)
        : events_(events),
          service_(events, "org.freedesktop.login1", [this](sd_bus_message* call) { return answer(call); }) {}

    /// What was asked to be delayed, by whom, and how; empty before.
    std::array<std::string, 3> asked;
    bool refuses = false;

    /// Whether somebody holds up the sleep: the other end of what was given out is open.
    [[nodiscard]] bool isHeld() {
        char byte = 0;
        return reader_.isOpen() && ::read(reader_.number(), &byte, 1) < 0;
    }

    /// Waits until nobody does; false where somebody still does after half a minute.
    [[nodiscard]] bool comesToBeLetGo() {
        pollfd closed{.fd = reader_.number(), .events = POLLIN, .revents = 0};
        return ::poll(&closed, 1, 30'000) > 0 && !isHeld();
    }

    void prepareForSleep(bool begins) {
        sd_bus_emit_signal(service_.bus(), "/org/freedesktop/login1", "org.freedesktop.login1.Manager",
                           "PrepareForSleep", "b", begins ? 1 : 0);
        events_.dispatch();
    }

private:
    bool answer(sd_bus_message* call) {
        const char* what = nullptr;
        const char* who = nullptr;
        const char* why = nullptr;
        const char* mode = nullptr;
        if (sd_bus_message_is_method_call(call, "org.freedesktop.login1.Manager", "Inhibit") <= 0 || refuses ||
            sd_bus_message_read(call, "ssss", &what, &who, &why, &mode) <= 0) {
            return false;
        }
        asked = {what, who, mode};
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
            return false;
        }
        reader_ = FileDescriptor(ends[0]);
        const FileDescriptor given(ends[1]);
        sd_bus_reply_method_return(call, "h", given.number());
        return true;
    }

    DesktopEvents& events_;
    FileDescriptor reader_ = FileDescriptor(-1);
    BusService service_;
};

class SleepWatchTest : public testing::Test {
protected:
    MessageBus bus;
    DesktopEvents events;
    Logind logind{events};
    /// Each sleep that was told of, with what lets it go on.
    std::vector<std::function<void()>> sleeps;
    std::optional<SleepWatch> watch{std::in_place, events,
                                    [this](std::function<void()> done) { sleeps.push_back(std::move(done)); }};

    bool comesToHold() {
        return dispatchUntil(events, [this] { return logind.isHeld(); });
    }

    bool comesToSleep(std::size_t count) {
        return dispatchUntil(events, [this, count] { return sleeps.size() == count; });
    }
};

TEST_F(SleepWatchTest, setDelaying_holdsSleepOnlyMeanwhile) {
    watch->setDelaying(true);
    ASSERT_TRUE(comesToHold());
    EXPECT_EQ(logind.asked, (std::array<std::string, 3>{"sleep", "Varnic", "delay"}));
    watch->setDelaying(false);
    EXPECT_TRUE(logind.comesToBeLetGo());
}

TEST_F(SleepWatchTest, sleep_waitsForDone) {
    watch->setDelaying(true);
    ASSERT_TRUE(comesToHold());
    logind.prepareForSleep(true);
    ASSERT_TRUE(comesToSleep(1));
    watch->setDelaying(false); // The recording has ended, but is not saved yet.
    EXPECT_TRUE(logind.isHeld());
    sleeps.front()();
    EXPECT_TRUE(logind.comesToBeLetGo());
}

TEST_F(SleepWatchTest, wakingUp_holdsTheNextSleepToo) {
    watch->setDelaying(true);
    ASSERT_TRUE(comesToHold());
    logind.prepareForSleep(true);
    ASSERT_TRUE(comesToSleep(1));
    sleeps.front()();
    ASSERT_TRUE(logind.comesToBeLetGo());
    logind.prepareForSleep(false);
    EXPECT_TRUE(comesToHold());
    logind.prepareForSleep(true);
    EXPECT_TRUE(comesToSleep(2));
}

TEST_F(SleepWatchTest, refusedLock_stillTellsOfSleep) {
    logind.refuses = true;
    watch->setDelaying(true);
    logind.prepareForSleep(true);
    EXPECT_TRUE(comesToSleep(1));
    EXPECT_FALSE(logind.isHeld());
}

TEST_F(SleepWatchTest, end_letsSleepGoAndOutlivesDone) {
    watch->setDelaying(true);
    ASSERT_TRUE(comesToHold());
    logind.prepareForSleep(true);
    ASSERT_TRUE(comesToSleep(1));
    watch.reset();
    EXPECT_TRUE(logind.comesToBeLetGo());
    sleeps.front()();
}

TEST(SleepWatchAlone, withoutBus_doesNothing) {
    const EnvironmentVariable none("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    DesktopEvents events;
    SleepWatch watch(events, [](const std::function<void()>&) { FAIL(); });
    watch.setDelaying(true);
    watch.setDelaying(false);
    events.dispatch();
}

} // namespace
} // namespace varnic
