#include "VarnicPlatform/Playback/PlaybackQueue.h"

#include <gmock/gmock.h>

#include <array>
#include <thread>

namespace varnic {
namespace {

using testing::Each;
using testing::ElementsAre;

/// So many frames whose samples all have the value.
std::vector<float> frames(std::size_t count, float value) {
    return std::vector<float>(count * PlaybackQueue::channels, value);
}

TEST(PlaybackQueue, pop_lessThere_fillsUpWithSilence) {
    PlaybackQueue queue;
    std::vector<float> out = frames(3, 9);
    queue.push(frames(2, 1));
    queue.pop(out, 0);
    EXPECT_THAT(out, ElementsAre(1, 1, 1, 1, 0, 0));
    queue.pop(out, 0);
    EXPECT_THAT(out, Each(0));
}

TEST(PlaybackQueue, discard_nothingOfItIsPopped) {
    PlaybackQueue queue;
    queue.push(frames(5, 1));
    queue.discard();
    EXPECT_EQ(queue.waiting(), 0U);
    queue.push(frames(2, 2));
    EXPECT_EQ(queue.waiting(), 2U);
    std::vector<float> out = frames(2, 9);
    queue.pop(out, 0);
    EXPECT_THAT(out, Each(2));
}

TEST(PlaybackQueue, heard_betweenKeptAndPopped) {
    PlaybackQueue queue;
    EXPECT_EQ(queue.heard(100), 0);
    queue.push(frames(48'000, 1));
    std::vector<float> out = frames(4'800, 0);
    queue.pop(out, 10); // frame 0 is heard at 10 s, frame 4,800 is the first that nobody asked for
    EXPECT_EQ(queue.heard(9), 0);
    EXPECT_NEAR(static_cast<double>(queue.heard(10.05)), 2'400, 1);
    EXPECT_EQ(queue.heard(11), 4'800);
    queue.discard();
    EXPECT_EQ(queue.heard(10.05), 48'000);
    queue.push(frames(10'000, 2));
    queue.pop(out, 12);
    EXPECT_NEAR(static_cast<double>(queue.heard(12.05)), 50'400, 1);
}

TEST(PlaybackQueue, heard_afterAStarvedWhile_countsOnWithoutIt) {
    PlaybackQueue queue;
    std::vector<float> out = frames(480, 0);
    queue.push(frames(480, 1));
    queue.pop(out, 1);
    queue.pop(out, 1.01);
    queue.push(frames(480, 1));
    queue.pop(out, 2);
    EXPECT_NEAR(static_cast<double>(queue.heard(2.005)), 720, 1);
}

/// One thread pushes rising numbers and discards now and then; what the other pops rises too, and nothing older than
/// the last discard known to it ever comes.
TEST(PlaybackQueue, discard_whileAnotherThreadPops_nothingOldComes) {
    PlaybackQueue queue;
    std::atomic<float> oldest = 0;
    std::atomic<bool> isDone = false;
    int old = 0;
    std::thread popping([&] {
        std::array<float, 256> out{};
        float before = 0;
        while (!isDone) {
            const float least = oldest;
            queue.pop(out, 1);
            for (const float sample : out) {
                if (sample != 0) {
                    old += sample < before || sample < least ? 1 : 0;
                    before = sample;
                }
            }
        }
    });
    float value = 1;
    while (value < 20'000) {
        while (queue.room() < 64) {
            std::this_thread::yield();
        }
        queue.push(frames(64, value));
        value += 1;
        if (static_cast<int>(value) % 50 == 0) {
            queue.discard();
            oldest = value;
        }
    }
    isDone = true;
    popping.join();
    EXPECT_EQ(old, 0);
}

} // namespace
} // namespace varnic
