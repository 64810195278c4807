#pragma once

#include "VarnicPlatform/Capture/LiveCapture.h"
#include "VarnicPlatform/Capture/Tones.h"

#include <cmath>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace varnic {

/// Whether the condition comes true; it is given a while, however busy the machine is.
inline bool comes(const std::function<bool()>& condition) {
    const double end = HostClock::now() + 30;
    while (!condition()) {
        if (HostClock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

/// A capture and what it has delivered, each side laid out along the time line, with silence in gaps.
class Recorder {
public:
    Recorder() = default;
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    /// Before anything that sound is added to is gone.
    ~Recorder() { capture.stop(); }

    LiveCapture capture;
    WantedSides wanted;
    double hostStart = HostClock::now();

    std::vector<Speaker> start() {
        return capture.start(hostStart, wanted,
                             [this](Speaker speaker, const PcmBuffer& buffer, double at) { add(speaker, buffer, at); });
    }

    /// Seconds since time zero.
    [[nodiscard]] double now() const { return HostClock::now() - hostStart; }

    [[nodiscard]] std::vector<float> track(Speaker speaker) const {
        const std::scoped_lock lock(lock_);
        return side(speaker);
    }

    /// Times at which a piece overlapped what was there, or lay in the future.
    [[nodiscard]] int misplaced() const {
        const std::scoped_lock lock(lock_);
        return misplaced_;
    }

    /// How loud the sine is in the newest quarter of a second of a side; 0 if less has come since the time given.
    [[nodiscard]] double loudness(Speaker speaker, double frequency, double since = 0) const {
        constexpr std::size_t window = 12'000;
        const std::vector<float> samples = track(speaker);
        if (static_cast<double>(samples.size()) < since * 48'000 + window) {
            return 0;
        }
        return Tones::amplitude(std::span(samples).last(window), frequency);
    }

    /// Whether the sine comes to be heard on a side, in sound from after this call.
    [[nodiscard]] bool comesToHear(Speaker speaker, double frequency, double least = Tones::loudness / 4) const {
        const double since = now();
        return comes([&] { return loudness(speaker, frequency, since) > least; });
    }

    /// Whether the sine comes to be heard as loud as it is made. A player that a busy machine stops for a moment spoils
    /// a window, but not all of them.
    [[nodiscard]] bool comesToHearInFull(Speaker speaker, double frequency, double tolerance = 0.01) const {
        return comes([&] { return std::abs(loudness(speaker, frequency) - Tones::loudness) < tolerance; });
    }

    /// Whether a side comes to be without the sine, in sound from after this call.
    [[nodiscard]] bool comesToMiss(Speaker speaker, double frequency) const {
        const double since = now();
        return comes([&] {
            return static_cast<double>(track(speaker).size()) > (since + 0.5) * 48'000 &&
                   loudness(speaker, frequency, since) < Tones::loudness / 50;
        });
    }

private:
    void add(Speaker speaker, const PcmBuffer& buffer, double at) {
        const std::scoped_lock lock(lock_);
        std::vector<float>& samples = side(speaker);
        const auto place = static_cast<std::size_t>(std::lround(at * 48'000));
        if (place + 1 < samples.size() || at + static_cast<double>(buffer.frames()) / buffer.rate > now() + 0.1) {
            ++misplaced_;
        }
        samples.resize(std::max(place, samples.size()));
        for (std::size_t i = 0; i < buffer.frames(); ++i) {
            float sum = 0;
            for (const std::vector<float>& row : buffer.channels) {
                sum += row[i];
            }
            samples.push_back(sum / static_cast<float>(buffer.channels.size()));
        }
    }

    [[nodiscard]] std::vector<float>& side(Speaker speaker) { return speaker == Speaker::you ? you_ : them_; }

    [[nodiscard]] const std::vector<float>& side(Speaker speaker) const {
        return speaker == Speaker::you ? you_ : them_;
    }

    mutable std::mutex lock_;
    std::vector<float> you_;
    std::vector<float> them_;
    int misplaced_ = 0;
};

} // namespace varnic
