#include "VarnicPlatform/Capture/FrameRing.h"

#include <gmock/gmock.h>

#include <array>
#include <thread>

namespace varnic {
namespace {

TEST(FrameRing, push_fromAnotherThread_comesOutWhole) {
    constexpr std::uint32_t blocks = 5000;
    FrameRing ring(2, 4096);
    std::jthread pusher([&] {
        std::array<float, 100> row{};
        for (std::uint32_t block = 0; block < blocks;) {
            row.fill(static_cast<float>(block));
            const std::array<const float*, 2> rows{row.data(), nullptr};
            const std::uint64_t lost = ring.lostFrames();
            ring.push(block, 48'000, rows.data(), 1 + block % 100);
            if (ring.lostFrames() == lost) {
                ++block;
            } else {
                std::this_thread::yield();
            }
        }
    });
    double stamp = 0;
    PcmBuffer block;
    for (std::uint32_t next = 0; next < blocks;) {
        if (!ring.pop(stamp, block)) {
            std::this_thread::yield();
            continue;
        }
        ASSERT_EQ(stamp, next);
        ASSERT_EQ(block.channels[0], std::vector(1 + next % 100, static_cast<float>(next)));
        ASSERT_EQ(block.channels[1], std::vector(1 + next % 100, 0.0F));
        ++next;
    }
}

TEST(FrameRing, push_noRoom_dropsAndCounts) {
    FrameRing ring(1, 4096);
    const std::array<float, 500> row{};
    const float* rows = row.data();
    EXPECT_EQ(ring.lastPush(), 0);
    for (int i = 0; i < 5; ++i) {
        ring.push(i, 48'000, &rows, row.size());
    }
    EXPECT_GT(ring.lastPush(), 0);
    EXPECT_EQ(ring.lostFrames(), 3U * row.size());
    double stamp = -1;
    PcmBuffer block;
    EXPECT_TRUE(ring.pop(stamp, block));
    EXPECT_TRUE(ring.pop(stamp, block));
    EXPECT_EQ(stamp, 1);
    EXPECT_FALSE(ring.pop(stamp, block));
}

} // namespace
} // namespace varnic
