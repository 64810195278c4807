#pragma once

#include "VarnicCore/Audio/AudioReader.h"
#include "VarnicCore/Audio/EchoRemoval.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace varnic {

/// A track read as one channel at EchoRemoval::rate, in blocks of the same length; silence behind its end.
class TrackBlocks {
public:
    /// Throws AudioError.
    explicit TrackBlocks(const std::filesystem::path& file);

    /// Fills the block; gives how much of it is audio, less than the whole only at the end.
    std::size_t read(EchoFilter::Block& block);

    /// Makes `read` go on at this sample.
    void seek(std::int64_t sample);

private:
    AudioReader reader_;
    PcmBuffer buffer_;
    std::size_t next_ = 0;
};

/// Reads the microphone's track of a call without the far end's echo. Memory does not grow with the
/// tracks. Owned by one thread at a time.
class EchoFreeReader {
public:
    /// What the first minutes of a call tell of its echo, so that it is known from the beginning. `reading` is called
    /// again and again meanwhile. Throws AudioError.
    static EchoRemoval learn(const std::filesystem::path& you, const std::filesystem::path& them,
                             const std::function<void()>& reading);

    /// Whether the far end's echo is in the microphone's track around this second of the call. `reading` as above.
    /// Throws AudioError.
    static bool hasEcho(const std::filesystem::path& you, const std::filesystem::path& them, double around,
                        const std::function<void()>& reading);

    /// Throws AudioError.
    EchoFreeReader(const std::filesystem::path& you, const std::filesystem::path& them, EchoRemoval removal);

    /// Replaces the buffer by the next audio, one channel at EchoRemoval::rate; false at the end.
    bool read(PcmBuffer& buffer);

    /// Makes `read` go on at this sample. The echo of what was played before it is not known for half a second.
    void seek(std::int64_t sample);

private:
    TrackBlocks you_;
    TrackBlocks them_;
    EchoRemoval removal_;
    std::size_t held_ = 0;
    std::int64_t taken_ = 0;
    std::int64_t given_ = 0;
};

} // namespace varnic
