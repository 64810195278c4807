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
    /// The sides that ought to deliver sound and have not for a while.
    std::vector<Speaker> silent;
    /// Bytes left on the recording's disk, if known.
    std::optional<std::uintmax_t> diskSpace;
    /// Why sound cannot be written now.
    std::optional<std::string> writeProblem;

    /// Bytes under which the user is warned.
    static constexpr std::uintmax_t lowDisk = 500'000'000;
    /// Bytes under which a recording stops while it can still be closed properly.
    static constexpr std::uintmax_t fullDisk = 100'000'000;
    /// Seconds without sound after which a side counts as silent.
    static constexpr double silenceAllowed = 5;

    [[nodiscard]] bool mustStop() const { return diskSpace && *diskSpace < fullDisk; }

    /// The user's sentence for the worst of it, or nothing.
    [[nodiscard]] std::optional<std::string> warning() const;
};

} // namespace varnic
