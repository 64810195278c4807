#include "VarnicCore/Audio/AudioError.h"
#include "VarnicCore/Audio/AudioMix.h"
#include "VarnicCore/Audio/CaptureError.h"
#include "VarnicCore/Fixtures/FixtureCapture.h"
#include "VarnicCore/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <mutex>
#include <thread>
#include <vector>

namespace varnic {
namespace {

struct Piece {
    Speaker speaker;
    double at;
    std::vector<float> samples;

    bool operator==(const Piece&) const = default;
};

class FixtureCaptureTest : public ::testing::Test {
protected:
    std::filesystem::path track(const std::string& name, std::size_t frames) const {
        std::vector<float> samples;
        for (std::size_t index = 0; index < frames; ++index) {
            samples.push_back(static_cast<float>(index) / 100'000);
        }
        AudioMix::write(samples, folder.path() / name, false);
        return folder.path() / name;
    }

    CaptureSource::Deliver keep() {
        return [this](Speaker speaker, const PcmBuffer& buffer, double at) {
            const std::lock_guard guard(mutex);
            delivered.push_back({speaker, at, buffer.channels[0]});
        };
    }

    std::vector<Piece> playAll(FixtureCapture& capture) {
        delivered.clear();
        capture.start(1000, {}, keep());
        while (!capture.finished()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        capture.stop();
        return delivered;
    }

    TemporaryFolder folder;
    std::mutex mutex;
    std::vector<Piece> delivered;
};

TEST_F(FixtureCaptureTest, start_anySpeed_deliversTheSamePiecesInOrder) {
    const auto you = track("you.caf", 12'000);
    const auto them = track("them.caf", 6000);
    FixtureCapture slow(you, them, 10);
    FixtureCapture fast(you, them, 100);
    const std::vector<Piece> pieces = playAll(slow);
    ASSERT_EQ(pieces.size(), 5U);
    const std::vector<Speaker> speakers{Speaker::you, Speaker::them, Speaker::you, Speaker::them, Speaker::you};
    const std::vector<double> times{0, 0, 0.1, 0.1, 0.2};
    const std::vector<std::size_t> lengths{4800, 4800, 4800, 1200, 2400};
    for (std::size_t index = 0; index < pieces.size(); ++index) {
        EXPECT_EQ(pieces[index].speaker, speakers[index]);
        EXPECT_EQ(pieces[index].at, times[index]);
        EXPECT_EQ(pieces[index].samples.size(), lengths[index]);
    }
    EXPECT_EQ(pieces[2].samples.front(), 4800.0F / 100'000);
    EXPECT_EQ(playAll(fast), pieces);
}

TEST_F(FixtureCaptureTest, start_oneOrNoSide) {
    FixtureCapture one(std::nullopt, track("them.caf", 4800), 100);
    EXPECT_EQ(one.start(0, {}, keep()), std::vector{Speaker::them});
    FixtureCapture none(std::nullopt, std::nullopt, 1);
    try {
        none.start(0, {}, keep());
        ADD_FAILURE();
    } catch (const CaptureError& error) {
        EXPECT_EQ(error, CaptureError::nothingToRecord());
    }
    FixtureCapture gone(folder.path() / "gone.caf", std::nullopt, 1);
    EXPECT_THROW(gone.start(0, {}, keep()), AudioError);
}

TEST_F(FixtureCaptureTest, stop_inTheMiddle_endsDelivery) {
    FixtureCapture capture(track("you.caf", 480'000), std::nullopt, 1);
    capture.stop();
    capture.start(0, {}, keep());
    capture.stop();
    const std::size_t count = delivered.size();
    capture.stop();
    EXPECT_FALSE(capture.finished());
    EXPECT_LT(count, 100U);
    EXPECT_EQ(delivered.size(), count);
}

} // namespace
} // namespace varnic
