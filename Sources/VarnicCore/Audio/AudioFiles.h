#pragma once

#include <filesystem>
#include <vector>

/// Whole-file views of an audio file. Any thread; nothing is kept between calls.
namespace varnic::AudioFiles {

/// Samples of one channel, `rate` of them a second.
struct MonoSamples {
    std::vector<float> samples;
    double rate = 0;
};

/// Seconds of audio, exact to the sample; 0 for a file that cannot be read.
double duration(const std::filesystem::path& file);

/// The whole file, mixed down to the mean of its channels, at its own rate. Throws AudioError.
MonoSamples monoSamples(const std::filesystem::path& file);

/// The level of each frame of `frame` seconds over all channels, in decibels of full scale, not below -120; the last
/// one may be shorter. The file is streamed. Throws AudioError.
std::vector<float> frameLevels(const std::filesystem::path& file, double frame);

/// The levels of windows of `window` seconds on a scale where 0 is -52 dB or less and 1 is -8 dB or more. Throws
/// AudioError.
std::vector<float> envelope(const std::filesystem::path& file, double window);

} // namespace varnic::AudioFiles
