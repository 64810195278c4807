#pragma once

#include "VarnicCore/Audio/AppendedFile.h"

#include <cstdint>
#include <span>
#include <vector>

/// The bytes of an MP4 file (ISO/IEC 14496-12 and -14) with one AAC track, that is a whole file at every moment of its
/// growth: a head, then fragments, each with its own small index. At the end an index of all packets is put behind
/// them and `cover` laid over the beginning, which makes one block of audio of all before it: an ordinary file, without
/// moving a byte. FFmpeg's own muxer does one or the other, and does not survive a write that failed. Pure functions.
namespace varnic::Mp4 {

/// What a player must know of the track.
struct Track {
    int rate = 0;
    int channels = 0;
    int bitRate = 0;
    /// The AudioSpecificConfig.
    Bytes config;
    /// Frames that the encoder puts before the first one; players leave them out.
    int delay = 0;
};

/// One packet: its bytes are `size` long, and it lasts for `frames`.
struct Packet {
    std::uint32_t size = 0;
    std::uint32_t frames = 0;
};

/// Packets that stand one behind the other at `offset` of the file.
struct Chunk {
    std::int64_t offset = 0;
    std::uint32_t packets = 0;
};

/// Where `cover` belongs.
inline constexpr std::int64_t coverOffset = 24;

/// The beginning of the file.
Bytes head(const Track& track);

/// A piece of the file, numbered from 1, whose first packet comes after `framesBefore` of the packets before. `sound`
/// stands at its end.
Bytes fragment(std::uint32_t number, std::int64_t framesBefore, std::span<const Packet> packets,
               std::span<const std::uint8_t> sound);

/// The index of all packets, to stand at the end of the file.
Bytes index(const Track& track, std::span<const Packet> packets, std::span<const Chunk> chunks);

/// What makes the file from `coverOffset` to `end` one block of audio.
Bytes cover(std::int64_t end);

} // namespace varnic::Mp4
