#pragma once

#include <cstddef>
#include <vector>

namespace varnic {

/// The form of audio in memory: 32-bit floats, a row a channel.
struct AudioFormat {
    /// Samples a second, of each channel.
    int rate = 0;
    int channels = 0;

    bool operator==(const AudioFormat&) const = default;
};

/// A piece of audio; every row has the same length. Full scale is -1 to 1, and samples may exceed it.
struct PcmBuffer {
    int rate = 0;
    std::vector<std::vector<float>> channels;

    [[nodiscard]] AudioFormat format() const { return {rate, static_cast<int>(channels.size())}; }

    [[nodiscard]] std::size_t frames() const { return channels.empty() ? 0 : channels.front().size(); }

    bool operator==(const PcmBuffer&) const = default;
};

/// The one form of every track.
namespace TrackFormat {

inline constexpr double sampleRate = 48000;
inline constexpr AudioFormat processing{48000, 1};
/// Bits a second of a compressed track.
inline constexpr int bitRate = 64'000;

} // namespace TrackFormat

} // namespace varnic
