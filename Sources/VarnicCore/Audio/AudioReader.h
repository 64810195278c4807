#pragma once

#include "VarnicCore/Audio/PcmBuffer.h"

#include <cstdint>
#include <filesystem>
#include <memory>

namespace varnic {

/// Reads the audio of a file from beginning to end, block by block. Sample 0 is where the file's time begins: encoder
/// delay and padding are left out, damaged places and holes between time stamps are silence of the same length, and a
/// truncated file ends where its readable part ends. Of several audio streams FFmpeg's choice of the best is read.
/// Movable, owned by one thread at a time.
class AudioReader {
public:
    /// In the file's own rate and channels. Throws AudioError.
    static AudioReader open(const std::filesystem::path& file);

    /// As one channel, the mean of the file's, at `rate`. Throws AudioError.
    static AudioReader openMono(const std::filesystem::path& file, int rate);

    /// At `rate`, mixed down to two channels where the file has more. Throws AudioError.
    static AudioReader openUpToStereo(const std::filesystem::path& file, int rate);

    AudioReader(AudioReader&&) noexcept;
    AudioReader& operator=(AudioReader&&) noexcept;
    AudioReader(const AudioReader&) = delete;
    AudioReader& operator=(const AudioReader&) = delete;
    ~AudioReader();

    /// The form of the blocks. It stays the same to the end, also where the file changes its form.
    [[nodiscard]] AudioFormat format() const;

    /// Replaces the block by the next one, of at most about a second; false at the end, with an empty block.
    bool read(PcmBuffer& block);

    /// Makes `read` go on exactly at this frame of the blocks, whether or not the end has been read. Behind the end
    /// nothing comes. At another rate than the file's the place is exact to half a frame, and where time stamps are too
    /// coarse to count frames by it is as exact as they are. Takes some milliseconds, the more the less of the way
    /// there is in an index.
    void seek(std::int64_t frame);

    /// How many frames there are from beginning to end, at the rate of the blocks. Of a file with an index only the end
    /// is read. Goes back to the beginning.
    [[nodiscard]] std::int64_t length();

private:
    class Decoder;
    explicit AudioReader(std::unique_ptr<Decoder> decoder);
    static AudioReader openAs(const std::filesystem::path& file, AudioFormat asked);

    std::unique_ptr<Decoder> decoder_;
};

/// The length of a file in frames of its own rate.
struct AudioLength {
    std::int64_t frames = 0;
    int rate = 0;

    [[nodiscard]] double seconds() const { return static_cast<double>(frames) / rate; }
};

/// How long a reader of the file would read. Reads its packets and decodes them only where they do not tell their
/// length. Throws AudioError.
AudioLength audioLength(const std::filesystem::path& file);

} // namespace varnic
