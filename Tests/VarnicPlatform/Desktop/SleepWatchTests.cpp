#include "VarnicPlatform/Desktop/SleepWatch.h"

#include "VarnicPlatform/Desktop/DispatchUntil.h"
#include "VarnicPlatform/Desktop/Logind.h"
#include "VarnicPlatform/Desktop/MessageBus.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace varnic {
namespace {

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
    ASSERT_TRUE(dispatchUntil(events, [this] { return !logind.asked.front().empty(); }));
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
