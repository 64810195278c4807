#pragma once

#include "VarnicCore/Audio/AudioMix.h"
#include "VarnicPlatform/Capture/LiveCaptureTest.h"
#include "VarnicPlatform/Playback/TrackPlayer.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <mutex>
#include <span>
#include <string>
#include <vector>

namespace varnic {

/// A player, and a recorder whose microphone hears what the virtual output plays.
class TrackPlayerTest : public LiveCaptureTest {
protected:
    using Event = TrackPlayer::Event;

    /// A track whose samples are at 48,000 Hz.
    [[nodiscard]] std::filesystem::path track(const std::string& name, const std::vector<float>& samples) const {
        const auto file = folder.path() / name;
        AudioMix::write(samples, file, true);
        return file;
    }

    [[nodiscard]] std::filesystem::path toneTrack(const std::string& name, double frequency, double seconds) const {
        return track(name, Tones::sines({frequency}, seconds).front());
    }

    /// Silence with the sound in it at the second.
    static std::vector<float> soundAt(double second, std::span<const float> sound, double seconds) {
        std::vector<float> samples(static_cast<std::size_t>(seconds * 48'000));
        std::ranges::copy(sound, samples.begin() + std::lround(second * 48'000));
        return samples;
    }

    void listen() {
        startSystem();
        run("link test-sink:monitor_FL test-mic:input_MONO");
        recorder.start();
    }

    /// A property of the player's node; empty where there is none.
    std::string property(const std::string& key) { return run("property varnic-playback " + key); }

    void load(std::vector<std::filesystem::path> tracks) {
        player.load(std::move(tracks));
        ASSERT_TRUE(comes([this] { return count(Event::loaded) > 0; }));
    }

    [[nodiscard]] long count(Event event) const {
        const std::scoped_lock lock(lock_);
        return std::ranges::count(events_, event);
    }

    [[nodiscard]] bool comesToPlayPast(double seconds) const {
        return comes([&] { return player.time() > seconds || !player.playing(); }) && player.playing();
    }

    [[nodiscard]] bool isHeard(double frequency) const { return recorder.comesToHear(Speaker::you, frequency); }

    [[nodiscard]] bool comesToSilence(double frequency) const { return recorder.comesToMiss(Speaker::you, frequency); }

    /// The time on the recorder's line at which the player says that it is at the second, which must be near.
    [[nodiscard]] double saidTime(double second) const { return recorder.now() - (player.time() - second); }

    /// The time on the recorder's line at which the sound was heard.
    [[nodiscard]] double heardTime(std::span<const float> sound) const {
        return static_cast<double>(Tones::find(sound, recorder.track(Speaker::you))) / 48'000;
    }

    /// Whether the recorder has come past a time on its line.
    [[nodiscard]] bool comesToRecord(double time) const {
        return comes([&] { return static_cast<double>(recorder.track(Speaker::you).size()) / 48'000 > time; });
    }

    void TearDown() override {
        player.stop();
        LiveCaptureTest::TearDown();
    }

private:
    void note(Event event) {
        const std::scoped_lock lock(lock_);
        events_.push_back(event);
    }

    mutable std::mutex lock_;
    std::vector<Event> events_;

protected:
    TrackPlayer player{[this](Event event) { note(event); }};
};

} // namespace varnic
