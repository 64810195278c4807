#pragma once

#include "VarnicCore/Audio/PcmBuffer.h"

#include <filesystem>
#include <memory>

namespace varnic {

/// An audio file that is being written, playable at every moment, for its owner only. One thread at a time. All
/// operations throw LibraryError where the file cannot be written; each may be tried again.
class SoundFile {
public:
    /// AAC in MP4 in place of what is at the path. A crash at any time loses the last second, a power cut the last few.
    static std::unique_ptr<SoundFile> createCompressed(const std::filesystem::path& path, AudioFormat format,
                                                       int bitRate);

    /// 32-bit float samples in place of what is at the path: WAV by that extension, else CAF.
    static std::unique_ptr<SoundFile> createPlain(const std::filesystem::path& path, AudioFormat format);

    SoundFile() = default;
    SoundFile(const SoundFile&) = delete;
    SoundFile& operator=(const SoundFile&) = delete;
    virtual ~SoundFile() = default;

    /// Adds audio in the file's format. When it throws it has taken nothing of the piece, and what it took before is
    /// kept and comes into the file when there is room again.
    virtual void write(const PcmBuffer& sound) = 0;

    /// Completes the file. Nothing may be written behind it. Without it the file is as a crash leaves it.
    virtual void close() = 0;
};

} // namespace varnic
