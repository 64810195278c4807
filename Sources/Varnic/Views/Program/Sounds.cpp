#include "Varnic/Views/Program/Sounds.h"

#include "Varnic/Background.h"
#include "VarnicPlatform/Playback/PlaybackQueue.h"
#include "VarnicPlatform/Playback/ShortSound.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace varnic::Sounds {

namespace {

/// A tone that dies away, and glides while it does.
struct Tone {
    /// In Hz, at the beginning and at the end.
    double from;
    double to;
    double seconds;
    /// 0 to 1.
    double loudness;
};

std::vector<float> render(const Tone& tone) {
    constexpr double attack = 0.004;
    const auto frames = static_cast<std::size_t>(tone.seconds * PlaybackQueue::rate);
    std::vector<float> result;
    result.reserve(frames * PlaybackQueue::channels);
    double phase = 0;
    for (std::size_t i = 0; i < frames; ++i) {
        const double time = static_cast<double>(i) / PlaybackQueue::rate;
        const double part = time / tone.seconds;
        phase += 2 * std::numbers::pi * std::lerp(tone.from, tone.to, part) / PlaybackQueue::rate;
        const double decay = (1 - part) * (1 - part) * (1 - part);
        const double swell = std::min(time / attack, 1.0);
        const auto value =
            static_cast<float>(tone.loudness * swell * decay * (std::sin(phase) + 0.25 * std::sin(2 * phase)));
        result.insert(result.end(), PlaybackQueue::channels, value);
    }
    return result;
}

} // namespace

std::vector<float> samples(const std::string& name) {
    if (name == "Tink") {
        return render({.from = 1760, .to = 1760, .seconds = 0.16, .loudness = 0.22});
    }
    if (name == "Pop") {
        return render({.from = 520, .to = 260, .seconds = 0.14, .loudness = 0.3});
    }
    return {};
}

void play(const std::string& name) {
    Background::start([sound = samples(name)] { ShortSound::play(sound); });
}

} // namespace varnic::Sounds
