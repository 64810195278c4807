#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <vector>

/// Tracks put together. Synchronous; any thread. Besides what is named, all throw LibraryError when the file cannot be
/// written, which may then be there in part.
namespace varnic::AudioMix {

/// A file that begins at `start` seconds, its samples times `gain`.
struct Clip {
    std::filesystem::path file;
    double start = 0;
    float gain = 1;
};

/// Makes one file (AAC of 128 kbit/s in MP4) in place of what is at `to`, with you on the left and them on the right,
/// as long as the longer of the two. A side without a file is silent. Throws TranscriberError `missingFile` when there
/// is neither, AudioError for one that cannot be read.
void stereo(const std::optional<std::filesystem::path>& you, const std::optional<std::filesystem::path>& them,
            const std::filesystem::path& to);

/// Makes a track of `duration` seconds in place of what is at `to`, in which the clips add up; what reaches past the
/// end is left out. Throws AudioError for a clip that cannot be read.
void render(const std::vector<Clip>& clips, double duration, const std::filesystem::path& to, bool compressed);

/// Makes a track of the samples, at 48 kHz, in place of what is at `to`.
void write(std::span<const float> samples, const std::filesystem::path& to, bool compressed);

} // namespace varnic::AudioMix
