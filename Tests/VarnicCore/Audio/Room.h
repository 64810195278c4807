#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <random>
#include <vector>

namespace varnic {

/// Sound that comes and goes four times a second like syllables do, another one for each seed.
inline std::vector<float> babble(double seconds, unsigned seed, int rate) {
    std::mt19937 random(seed);
    std::normal_distribution<float> noise(0, 0.1F);
    std::vector<float> samples(static_cast<std::size_t>(seconds * rate));
    float low = 0;
    const float smoothing = rate == 48'000 ? 0.97F : 0.9F; // little of it is above what the engine hears
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double phase = std::fmod(4.0 * static_cast<double>(i) / rate, 1.0);
        low = smoothing * low + (1 - smoothing) * 5 * noise(random);
        samples[i] = phase < 0.75 ? low : 0.02F * low;
    }
    return samples;
}

/// Adds what a microphone hears of a sound in a room: so much down, late, and with half a dozen reflections.
inline void overhear(std::vector<float>& heard, const std::vector<float>& sound, double decibels, double late,
                     int rate) {
    for (int reflection = 0; reflection < 7; ++reflection) {
        const auto gain = static_cast<float>(std::pow(10, decibels / 20) * std::pow(-0.5, reflection));
        const auto delay = static_cast<std::size_t>((late + 0.011 * reflection) * rate);
        for (std::size_t i = delay; i < std::min(heard.size(), sound.size() + delay); ++i) {
            heard[i] += gain * sound[i - delay];
        }
    }
}

} // namespace varnic
