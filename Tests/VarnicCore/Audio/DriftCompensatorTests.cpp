#include "VarnicCore/Audio/DriftCompensator.h"

#include <gmock/gmock.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <random>

namespace varnic {
namespace {

constexpr double pi = std::numbers::pi;
constexpr std::size_t blockFrames = 960;

/// A device whose clock runs at `speed` against the stamps' clock, hearing a sine of real time; silence at 0 Hz.
struct Device {
    double speed = 1;
    int rate = 48'000;
    double frequency = 1000;
    std::int64_t count = 0;

    [[nodiscard]] double time(std::int64_t frame) const { return static_cast<double>(frame) / (rate * speed); }

    PcmBuffer next() {
        PcmBuffer block{.rate = rate, .channels = {std::vector<float>(blockFrames)}};
        for (std::size_t i = 0; frequency > 0 && i < blockFrames; ++i) {
            const double cycles = frequency * time(count + static_cast<std::int64_t>(i));
            block.channels.front()[i] = static_cast<float>(std::sin(2 * pi * std::fmod(cycles, 1.0)));
        }
        count += std::int64_t{blockFrames};
        return block;
    }
};

/// How late the sine in a piece is against that of real time, in seconds; ambiguous by whole periods.
double lag(const DriftCompensator::Piece& piece, double frequency) {
    std::complex<double> heard;
    const std::vector<float>& samples = piece.sound.channels.front();
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double time = piece.at + static_cast<double>(i) / 48'000;
        heard += static_cast<double>(samples[i]) * std::polar(1.0, -2 * pi * std::fmod(frequency * time, 1.0));
    }
    return -std::arg(heard * std::complex<double>(0, 1)) / (2 * pi * frequency);
}

struct Drift {
    double speed;
    double jitter;
    int rate;
};

class DriftCompensatorHour : public testing::TestWithParam<Drift> {};

TEST_P(DriftCompensatorHour, compensate_anHourOfADriftingDevice_staysWithinTenMilliseconds) {
    const auto [speed, jitter, rate] = GetParam();
    Device device{.speed = speed, .rate = rate, .frequency = 0};
    DriftCompensator compensator;
    std::mt19937 random(7);
    std::uniform_real_distribution<double> noise(-jitter, jitter);
    double end = 0;
    double worst = 0;
    while (device.time(device.count) < 3600) {
        const double stamp = device.time(device.count) + noise(random);
        const auto piece = compensator.compensate(stamp, device.next());
        ASSERT_TRUE(piece);
        ASSERT_NEAR(piece->at, end, 1e-6) << "a gap or an overlap";
        end = piece->at + static_cast<double>(piece->sound.frames()) / 48'000;
        worst = std::max(worst, std::abs(end - device.time(device.count)));
    }
    EXPECT_LT(worst, 0.01 + jitter);
    RecordProperty("worstMilliseconds", std::to_string(worst * 1000));
}

INSTANTIATE_TEST_SUITE_P(Devices, DriftCompensatorHour,
                         testing::Values(Drift{1.0002, 0, 48'000}, Drift{0.9998, 0, 48'000},
                                         Drift{1.0002, 0.005, 48'000}, Drift{0.9998, 0.005, 44'100},
                                         Drift{1, 0, 16'000}));

TEST(DriftCompensator, compensate_driftingSine_soundsWhereItWasHeard) {
    Device device{.speed = 1.0002, .frequency = 100};
    DriftCompensator compensator;
    double worst = 0;
    while (device.time(device.count) < 300) {
        const double stamp = device.time(device.count);
        const auto piece = compensator.compensate(stamp, device.next());
        ASSERT_TRUE(piece);
        if (stamp > 1) {
            worst = std::max(worst, std::abs(lag(*piece, device.frequency)));
        }
    }
    EXPECT_GT(worst, 0.002) << "the device did not drift";
    EXPECT_LT(worst, 0.0045);
}

TEST(DriftCompensator, compensate_driftingSine_staysPure) {
    Device device{.speed = 1.0002};
    DriftCompensator compensator;
    // What x(n+1) - 2 cos(w) x(n) + x(n-1) leaves of a pure sine is nothing; a click or noise shows in full.
    const double twice = 2 * std::cos(2 * pi * device.frequency / 48'000);
    double before = 0;
    double last = 0;
    double worst = 0;
    while (device.time(device.count) < 100) {
        const double stamp = device.time(device.count);
        const auto piece = compensator.compensate(stamp, device.next());
        ASSERT_TRUE(piece);
        for (const float sound : piece->sound.channels.front()) {
            const auto sample = static_cast<double>(sound);
            if (stamp > 0.1) {
                worst = std::max(worst, std::abs(sample - twice * last + before));
            }
            before = std::exchange(last, sample);
        }
    }
    EXPECT_LT(worst, 5e-5);
}

TEST(DriftCompensator, compensate_perfectStamps_leavesSamplesAsTheyAre) {
    Device device;
    DriftCompensator compensator;
    double worst = 0;
    for (int block = 0; block < 1000; ++block) {
        const double stamp = device.time(device.count);
        const auto piece = compensator.compensate(stamp, device.next());
        ASSERT_TRUE(piece);
        for (std::size_t i = 0; block > 0 && i < piece->sound.frames(); ++i) {
            const double time = piece->at + static_cast<double>(i) / 48'000;
            worst = std::max(
                worst, std::abs(static_cast<double>(piece->sound.channels[0][i]) - std::sin(2 * pi * 1000 * time)));
        }
    }
    EXPECT_LT(worst, 1e-3);
}

PcmBuffer constant(float value, std::size_t frames, std::size_t channels = 1, int rate = 48'000) {
    return {.rate = rate, .channels = std::vector(channels, std::vector<float>(frames, value))};
}

TEST(DriftCompensator, compensate_gap_beginsAnewAtTheStamp) {
    DriftCompensator compensator;
    EXPECT_EQ(compensator.compensate(0, constant(0.5F, 4800))->at, 0);
    EXPECT_EQ(compensator.compensate(1.5, constant(0.5F, 4800))->at, 1.5);
}

TEST(DriftCompensator, compensate_jumpBack_cutsWhatOverlaps) {
    DriftCompensator compensator;
    const auto first = compensator.compensate(1, constant(0.5F, 48'000));
    const double end = 1 + static_cast<double>(first->sound.frames()) / 48'000;
    EXPECT_FALSE(compensator.compensate(1.5, constant(0.5F, 4800))) << "wholly in the past";
    const auto next = compensator.compensate(1.8, constant(0.5F, 24'000));
    EXPECT_DOUBLE_EQ(next->at, end);
    EXPECT_NEAR(next->at + static_cast<double>(next->sound.frames()) / 48'000, 2.3, 0.001);
}

TEST(DriftCompensator, compensate_startsJustAfterZero_fillsTheLittleGap) {
    DriftCompensator compensator;
    const auto piece = compensator.compensate(0.03, constant(0.5F, 4800));
    EXPECT_EQ(piece->at, 0);
    EXPECT_EQ(piece->sound.channels[0][1000], 0);
    EXPECT_NEAR(piece->sound.channels[0][1440 + 100], 0.5, 0.01);
}

TEST(DriftCompensator, compensate_stampBeforeZero_deliversFromZero) {
    DriftCompensator compensator;
    const auto piece = compensator.compensate(-0.02, constant(0.5F, 4800));
    EXPECT_EQ(piece->at, 0);
    EXPECT_NEAR(static_cast<double>(piece->sound.frames()), 4800 - 960, 32);
}

TEST(DriftCompensator, compensate_formatChanges_continuesWithoutOverlap) {
    DriftCompensator compensator;
    const auto first = compensator.compensate(0, constant(0.5F, 44'100, 2, 44'100));
    const auto next = compensator.compensate(1, constant(0.5F, 16'000, 1, 16'000));
    EXPECT_EQ(first->sound.channels.size(), 2U);
    EXPECT_EQ(next->sound.channels.size(), 1U);
    EXPECT_NEAR(next->at, static_cast<double>(first->sound.frames()) / 48'000, 1e-9);
    EXPECT_NEAR(next->at + static_cast<double>(next->sound.frames()) / 48'000, 2, 0.002);
}

TEST(DriftCompensator, compensate_nothingOrNonsense_givesNothing) {
    DriftCompensator compensator;
    EXPECT_FALSE(compensator.compensate(0, {}));
    EXPECT_FALSE(compensator.compensate(0, constant(0, 0)));
    EXPECT_FALSE(compensator.compensate(std::nan(""), constant(0, 100)));
    EXPECT_FALSE(compensator.compensate(0, constant(0, 100, 1, 0)));
}

} // namespace
} // namespace varnic
