#include "VarnicPlatform/Capture/LiveCaptureTest.h"

#include "VarnicPlatform/Capture/SoundDevices.h"

#include <cstdlib>
#include <mutex>

namespace varnic {

static void PrintTo(const SoundDeviceList& list, std::ostream* out) {
    *out << (list.isReachable ? "reachable" : "unreachable") << (list.hasSound ? "" : ", without sound");
    for (const auto* devices : {&list.microphones, &list.outputs}) {
        *out << ";";
        for (const SoundDevice& device : *devices) {
            *out << " " << device.name;
        }
    }
}

namespace {

/// The last list that was told.
class Listener {
public:
    [[nodiscard]] bool comesTo(const SoundDeviceList& expected) const {
        const bool came = comes([&] { return last() == expected; });
        EXPECT_EQ(last(), expected);
        return came;
    }

private:
    [[nodiscard]] std::optional<SoundDeviceList> last() const {
        const std::scoped_lock guard(lock_);
        return last_;
    }

    mutable std::mutex lock_;
    std::optional<SoundDeviceList> last_;
    SoundDevices devices_{[this](SoundDeviceList list) {
        const std::scoped_lock guard(lock_);
        last_ = std::move(list);
    }};
};

class SoundDevicesTest : public LiveCaptureTest {
protected:
    const SoundDevice mic{.name = "test-mic", .label = "Virtual test-mic"};
    const SoundDevice sink{.name = "test-sink", .label = "Virtual test-sink"};
    const SoundDevice second{.name = "second", .label = "Virtual second"};
};

TEST_F(SoundDevicesTest, list_followsDevicesAndDefaults) {
    startSystem();
    const Listener listener;
    ASSERT_TRUE(listener.comesTo({true, true, {mic}, {sink}}));
    run("add-source second");
    ASSERT_TRUE(listener.comesTo({true, true, {mic, second}, {sink}}));
    run("default-source second");
    ASSERT_TRUE(listener.comesTo({true, true, {second, mic}, {sink}}));
    run("remove second");
    ASSERT_TRUE(listener.comesTo({true, true, {mic}, {sink}}));
    run("add-sink second");
    ASSERT_TRUE(listener.comesTo({true, true, {mic}, {sink, second}}));
}

TEST_F(SoundDevicesTest, list_serverGoesAndComes_isFollowed) {
    startSystem();
    const Listener listener;
    ASSERT_TRUE(listener.comesTo({true, true, {mic}, {sink}}));
    run("kill wireplumber");
    run("kill pipewire");
    ASSERT_TRUE(listener.comesTo({}));
    run("start pipewire");
    run("start wireplumber");
    EXPECT_TRUE(listener.comesTo({true, true, {mic}, {sink}}));
}

TEST_F(SoundDevicesTest, list_noServer_saysSo) {
    setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
    const Listener listener;
    EXPECT_TRUE(listener.comesTo({}));
}

} // namespace
} // namespace varnic
