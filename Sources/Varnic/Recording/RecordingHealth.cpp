#include "Varnic/Recording/RecordingHealth.h"

#include <fmt/format.h>

#include <algorithm>

namespace varnic {

std::optional<std::string> RecordingHealth::warning() const {
    const auto holds = [](const std::vector<Speaker>& some, Speaker side) {
        return std::ranges::find(some, side) != some.end();
    };
    if (writeProblem) {
        return fmt::format("The sound isn’t being saved: {}", *writeProblem);
    }
    if (diskSpace && *diskSpace < lowDisk) {
        return fmt::format("The disk is almost full — {} MB left.", *diskSpace / 1'000'000);
    }
    if (holds(silent, Speaker::you)) {
        return "The microphone has gone silent.";
    }
    if (holds(silent, Speaker::them)) {
        return "The Mac’s sound has gone silent.";
    }
    if (holds(sides, Speaker::you) && !holds(sides, Speaker::them)) {
        return "Recording your side only — their side needs Screen Recording.";
    }
    if (holds(sides, Speaker::them) && !holds(sides, Speaker::you)) {
        return "Recording their side only — the microphone is off.";
    }
    return std::nullopt;
}

} // namespace varnic
