#include "VarnicCore/Fixtures/FixtureCapture.h"

#include "VarnicCore/Audio/AudioReader.h"
#include "VarnicCore/Audio/CaptureError.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>

namespace varnic {

namespace {

constexpr std::int64_t piecesASecond = 10;

PcmBuffer readWhole(const std::filesystem::path& file) {
    AudioReader reader = AudioReader::open(file);
    const AudioFormat format = reader.format();
    PcmBuffer whole{format.rate, std::vector<std::vector<float>>(static_cast<std::size_t>(format.channels))};
    PcmBuffer block;
    while (reader.read(block)) {
        for (std::size_t row = 0; row < whole.channels.size(); ++row) {
            whole.channels[row].insert(whole.channels[row].end(), block.channels[row].begin(),
                                       block.channels[row].end());
        }
    }
    return whole;
}

/// Piece number `index` of the audio; empty beyond its end.
PcmBuffer pieceOf(const PcmBuffer& whole, std::int64_t index) {
    const auto frames = static_cast<std::int64_t>(whole.frames());
    const std::int64_t begin = std::min(whole.rate * index / piecesASecond, frames);
    const std::int64_t end = std::min(whole.rate * (index + 1) / piecesASecond, frames);
    PcmBuffer piece{whole.rate, {}};
    for (const std::vector<float>& row : whole.channels) {
        piece.channels.emplace_back(row.begin() + begin, row.begin() + end);
    }
    return piece;
}

} // namespace

FixtureCapture::FixtureCapture(std::optional<std::filesystem::path> you, std::optional<std::filesystem::path> them,
                               double speed)
    : you_(std::move(you)), them_(std::move(them)), speed_(speed) {}

std::vector<Speaker> FixtureCapture::start(double /*hostStart*/, WantedSides wanted, Deliver deliver) {
    stop();
    std::vector<Side> sides;
    if (you_ && wanted.you) {
        sides.emplace_back(Speaker::you, readWhole(*you_));
    }
    if (them_ && wanted.them) {
        sides.emplace_back(Speaker::them, readWhole(*them_));
    }
    if (sides.empty()) {
        throw CaptureError::nothingToRecord();
    }
    std::vector<Speaker> started;
    for (const auto& [speaker, sound] : sides) {
        started.push_back(speaker);
    }
    finished_ = false;
    timer_ = std::jthread([this, sides = std::move(sides), deliver = std::move(deliver)](
                              const std::stop_token& stopped) { play(stopped, sides, deliver); });
    return started;
}

void FixtureCapture::stop() {
    timer_ = {}; // asks it to stop and waits for it
}

void FixtureCapture::play(const std::stop_token& stopped, const std::vector<Side>& sides, const Deliver& deliver) {
    using Clock = std::chrono::steady_clock;
    const auto began = Clock::now();
    std::mutex mutex;
    std::condition_variable_any wake;
    std::unique_lock lock(mutex);
    for (std::int64_t index = 0; !stopped.stop_requested(); ++index) {
        const double at = static_cast<double>(index) / piecesASecond;
        bool delivered = false;
        for (const auto& [speaker, sound] : sides) {
            PcmBuffer piece = pieceOf(sound, index);
            if (piece.frames() > 0) {
                deliver(speaker, std::move(piece), at);
                delivered = true;
            }
        }
        if (!delivered) {
            finished_ = true;
            return;
        }
        const auto due = began + std::chrono::duration_cast<Clock::duration>(
                                     std::chrono::duration<double>((at + 1.0 / piecesASecond) / speed_));
        wake.wait_until(lock, stopped, due, [] { return false; });
    }
}

} // namespace varnic
