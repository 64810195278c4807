#include "Varnic/AppModel/ScratchModel.h"
#include "Varnic/EventLoop.h"
#include "Varnic/Recording/DeviceList.h"
#include "Varnic/Recording/LiveLevel.h"
#include "VarnicCore/TemporaryFolder.h"
#include "VarnicPlatform/Capture/SoundSystem.h"
#include "VarnicPlatform/Capture/Tones.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <string>

namespace varnic {
namespace {

class DevicesTest : public testing::Test {
protected:
    std::string tone() {
        const auto file = folder.path() / "tone.wav";
        Tones::write(file, Tones::sines({440}, 60));
        return file;
    }

    TemporaryFolder folder;
    SoundSystem system;
    const DeviceChoice second{.name = "second", .label = "Virtual second"};
};

TEST_F(DevicesTest, list_saysWhatStandsInForAMissingDevice) {
    const DeviceList devices;
    EXPECT_EQ(devices.microphoneNotice(second), std::nullopt) << "nothing is known yet";
    ASSERT_TRUE(waitUntil([&] { return devices.list.value().has_value(); }));
    EXPECT_EQ(devices.microphoneNotice({}), std::nullopt);
    EXPECT_EQ(devices.microphoneNotice(second),
              "“Virtual second” isn’t there. Until it is back, calls are recorded from the default microphone.");
    EXPECT_EQ(devices.outputNotice(second),
              "“Virtual second” isn’t there. Until it is back, all that programs play counts as the other side.");
    system("add-source second");
    EXPECT_TRUE(waitUntil([&] { return !devices.microphoneNotice(second); }));
    system("remove second");
    system("remove test-mic");
    EXPECT_TRUE(waitUntil([&] { return devices.microphoneNotice({}) == "No microphone was found."; }));
}

TEST_F(DevicesTest, level_isThatOfTheSideWhileItIsListenedTo) {
    LiveLevel level(Speaker::you);
    level.start({});
    EXPECT_TRUE(level.isRunning());
    system("feed " + tone());
    EXPECT_TRUE(waitUntil([&] { return level.level.value() > 0.5F; }));
    level.stop();
    EXPECT_EQ(level.level.value(), 0);
    EXPECT_FALSE(level.isRunning());

    LiveLevel other(Speaker::them);
    system("add-sink second");
    other.start({.microphone = {}, .heard = second});
    system("play " + tone() + " second");
    EXPECT_TRUE(waitUntil([&] { return other.level.value() > 0.5F; }));
    EXPECT_EQ(other.notice.value(), std::nullopt);
    system("remove second");
    EXPECT_TRUE(waitUntil([&] { return other.notice.value().has_value(); }));
}

TEST_F(DevicesTest, level_whatCantBeHeard_isTold) {
    system("remove test-mic");
    LiveLevel level(Speaker::you);
    level.start({});
    ASSERT_TRUE(waitUntil([&] { return level.notice.value().has_value(); }));
    EXPECT_NE(level.notice.value()->find("no input device"), std::string::npos);
    // An end while it still opens is one.
    level.start({.microphone = second, .heard = {}});
}

TEST_F(DevicesTest, settings_changedInACall_areFollowed) {
    system("add-source second");
    ScratchModel model;
    const auto capture = model->makeCapture();
    std::atomic<float> loudest = 0;
    capture->start(HostClock::now(), {.you = true, .them = false}, [&loudest](Speaker, const PcmBuffer& sound, double) {
        for (const float sample : sound.channels.front()) {
            loudest = std::max(loudest.load(), std::abs(sample));
        }
    });
    system("feed " + tone() + " second");
    model->settings.microphone = second;
    EXPECT_TRUE(waitUntil([&] { return loudest > 0.1F; }));
    capture->stop();
}

} // namespace
} // namespace varnic
