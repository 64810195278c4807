#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <vector>

namespace varnic {

/// Sounds that a test can tell apart.
namespace Tones {

/// How loud each is made.
inline constexpr double loudness = 0.25;

/// A sine of so many seconds for each frequency, a row each; 0 Hz is silence.
std::vector<std::vector<float>> sines(const std::vector<double>& frequencies, double seconds, int rate = 48'000);

/// A fifth of a second that sweeps from 500 to 2500 Hz: it has one place only where it fits.
std::vector<float> sweep(int rate = 48'000);

/// Writes rows as 16-bit WAV.
void write(const std::filesystem::path& file, const std::vector<std::vector<float>>& rows, int rate = 48'000);

/// How loud the sine is in the samples, which are at 48,000 Hz.
double amplitude(std::span<const float> samples, double frequency);

/// Where the pattern, of less than 6000 Hz, fits best; to a tenth of a millisecond.
std::size_t find(std::span<const float> pattern, std::span<const float> samples);

} // namespace Tones
} // namespace varnic
