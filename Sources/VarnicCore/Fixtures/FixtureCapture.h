#pragma once

#include "VarnicCore/Audio/CaptureSource.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace varnic {

/// Plays two files as if they were being captured, in pieces of a tenth of a second from a thread of its own.
class FixtureCapture final : public CaptureSource {
public:
    /// At `speed` 2 the same pieces with the same times come twice as often.
    FixtureCapture(std::optional<std::filesystem::path> you, std::optional<std::filesystem::path> them, double speed);

    ~FixtureCapture() override { stop(); }

    /// Reads the files whole and starts to play them. The time of a piece is its place in the file, whatever the host's
    /// clock says. Throws CaptureError `nothingToRecord` without a wanted file, AudioError for one that cannot be read.
    std::vector<Speaker> start(double hostStart, WantedSides wanted, Deliver deliver) override;

    void stop() override;

    /// Whether all audio was handed out. Any thread.
    [[nodiscard]] bool finished() const { return finished_; }

private:
    using Side = std::pair<Speaker, PcmBuffer>;

    void play(const std::stop_token& stopped, const std::vector<Side>& sides, const Deliver& deliver);

    std::optional<std::filesystem::path> you_;
    std::optional<std::filesystem::path> them_;
    double speed_;
    std::atomic<bool> finished_ = false;
    std::jthread timer_;
};

} // namespace varnic
