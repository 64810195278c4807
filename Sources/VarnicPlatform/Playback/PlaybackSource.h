#pragma once

#include "VarnicCore/Audio/AudioReader.h"
#include "VarnicPlatform/Playback/PlaybackQueue.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace varnic {

/// The audio of some files together, from 0 each, as a PlaybackQueue takes it. Files of one channel are in the middle.
/// Files are kept open and read as they are needed. One thread at a time.
class PlaybackSource {
public:
    PlaybackSource() = default;
    /// Leaves out files that cannot be read.
    explicit PlaybackSource(const std::vector<std::filesystem::path>& files);

    /// Frames of the longest file; 0 where there is none.
    [[nodiscard]] std::int64_t length() const { return length_; }

    /// Makes `read` go on at this frame.
    void seek(std::int64_t frame);

    /// Gives the next interleaved samples, some hundredths of a second, valid until the next call; none at the end.
    /// Files that have ended or can no longer be read are silent.
    std::span<const float> read();

private:
    struct Track {
        AudioReader reader;
        /// What was read and, from frame `at` on, is still to be heard.
        PcmBuffer block{};
        std::size_t at = 0;
        bool hasEnded = false;

        /// Reads on where nothing is left; false at the end.
        bool fill();
        /// Adds what comes next to interleaved samples.
        void addTo(std::span<float> samples);
    };

    std::vector<Track> tracks_;
    std::int64_t length_ = 0;
    std::int64_t place_ = 0;
    std::vector<float> mixed_;
};

} // namespace varnic
