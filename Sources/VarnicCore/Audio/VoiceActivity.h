#pragma once

#include <filesystem>
#include <vector>

/// Where somebody speaks in a track, by its level alone. Any thread.
namespace varnic::VoiceActivity {

/// A part of a file, in seconds from its beginning.
struct Range {
    double start = 0;
    double end = 0;

    bool operator==(const Range&) const = default;
};

/// The length of the frames whose levels `detect` takes from a file, in seconds.
inline constexpr double frameSeconds = 0.02;

/// The voiced parts of a file: those with pauses of at most `bridge` seconds between them are one, and of the
/// results those shorter than `minSpeech` seconds are left out. Throws AudioError.
std::vector<Range> detect(const std::filesystem::path& file, double minSpeech, double bridge);

/// The same from levels in decibels, one for each `frame` seconds.
std::vector<Range> detect(const std::vector<float>& levels, double frame, double minSpeech, double bridge);

} // namespace varnic::VoiceActivity
