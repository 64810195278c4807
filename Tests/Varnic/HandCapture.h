#pragma once

#include "VarnicCore/Audio/CaptureError.h"
#include "VarnicCore/Audio/CaptureSource.h"

#include <atomic>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace varnic {

/// A source of sound that a test works by hand.
class HandCapture final : public CaptureSource {
public:
    explicit HandCapture(std::vector<Speaker> sides) : sides_(std::move(sides)) {}

    std::optional<CaptureError> failure;
    std::set<Speaker> expected;
    std::vector<Speaker> late;
    std::optional<std::string> said;
    std::atomic<bool> isStopped = false;
    /// While this is true `start` doesn't return, though sound may come in already.
    std::atomic<bool> isOpening = false;
    std::atomic<bool> takesSound = false;

    std::vector<Speaker> start(double /*hostStart*/, WantedSides /*wanted*/, Deliver deliver) override {
        if (failure) {
            throw CaptureError(*failure);
        }
        deliver_ = std::move(deliver);
        takesSound = true;
        isOpening.wait(true);
        return sides_;
    }

    void stop() override {
        deliver_ = nullptr;
        isStopped = true;
    }

    [[nodiscard]] std::vector<Speaker> awaited() const override { return late; }

    [[nodiscard]] std::optional<std::string> notice() const override { return said; }

    [[nodiscard]] bool expects(Speaker speaker) const override { return expected.contains(speaker); }

    /// A tone of half of full scale, in one piece.
    void play(Speaker speaker, double at, double seconds, double amplitude = 0.5) const {
        PcmBuffer buffer{.rate = 48'000, .channels = {std::vector<float>(static_cast<std::size_t>(seconds * 48'000))}};
        for (std::size_t i = 0; i < buffer.frames(); ++i) {
            buffer.channels.front()[i] =
                static_cast<float>(amplitude * std::sin(2 * std::numbers::pi * 440 * static_cast<double>(i) / 48'000));
        }
        deliver_(speaker, std::move(buffer), at);
    }

private:
    std::vector<Speaker> sides_;
    Deliver deliver_;
};

} // namespace varnic
