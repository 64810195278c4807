#pragma once

#include "VarnicCore/Models/Speaker.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace varnic {

/// How a running recording fares.
struct RecordingHealth {
    /// The sides that really record.
    std::vector<Speaker> sides;
    /// The sides of which nothing has been heard for too long: see `silenceAllowed`.
    std::vector<Speaker> silent;
    /// Bytes left on the recording's disk, if known.
    std::optional<std::uintmax_t> diskSpace;
    /// Why audio cannot be written now.
    std::optional<std::string> writeProblem;
    /// See CaptureSource::notice.
    std::optional<std::string> notice;

    /// What a second of a call takes on the disk at the most, in bytes: both tracks, what frames them, and their index.
    static constexpr std::uintmax_t bytesPerSecond = 18'000;
    /// Bytes under which a recording stops while it can still be closed and its note be saved.
    static constexpr std::uintmax_t fullDisk = 20'000'000;
    /// Bytes under which the user is warned: ten minutes are left.
    static constexpr std::uintmax_t lowDisk = fullDisk + bytesPerSecond * 600;
    /// Bytes without which no recording begins: what an hour needs.
    static constexpr std::uintmax_t leastDisk = fullDisk + bytesPerSecond * 3600;

    /// Seconds after which a side is silent: a microphone that gives nothing at all or digital silence, and a program
    /// that plays and of which no audio comes.
    static constexpr double silenceAllowed(Speaker side) { return side == Speaker::you ? 10 : 5; }

    [[nodiscard]] bool mustStop() const { return diskSpace && *diskSpace < fullDisk; }

    /// The user's sentence for the worst of it, or nothing.
    [[nodiscard]] std::optional<std::string> warning() const;

    /// Says which side is not recorded; nothing where both are.
    [[nodiscard]] static std::optional<std::string> missingSide(const std::vector<Speaker>& sides);

    /// Why a recording should not begin on a disk with so many bytes left; nothing where there is room.
    [[nodiscard]] static std::optional<std::string> refusal(std::optional<std::uintmax_t> diskSpace);
};

} // namespace varnic
