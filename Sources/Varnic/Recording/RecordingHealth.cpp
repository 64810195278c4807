#include "Varnic/Recording/RecordingHealth.h"

#include <fmt/format.h>

#include <algorithm>

namespace varnic {

namespace {

bool holds(const std::vector<Speaker>& some, Speaker side) {
    return std::ranges::find(some, side) != some.end();
}

} // namespace

std::optional<std::string> RecordingHealth::warning() const {
    if (writeProblem) {
        return fmt::format("The sound isn’t being saved: {}", *writeProblem);
    }
    if (diskSpace && *diskSpace < lowDisk) {
        return "The disk is almost full — less than ten minutes of recording fit.";
    }
    if (holds(silent, Speaker::you)) {
        return "Your microphone is silent — is it muted?";
    }
    if (holds(silent, Speaker::them)) {
        return "The Mac’s sound has gone silent.";
    }
    return notice ? notice : missingSide(sides);
}

std::optional<std::string> RecordingHealth::missingSide(const std::vector<Speaker>& sides) {
    if (holds(sides, Speaker::you) && !holds(sides, Speaker::them)) {
        return "Recording your side only — their side needs Screen Recording.";
    }
    if (holds(sides, Speaker::them) && !holds(sides, Speaker::you)) {
        return "Recording their side only — the microphone is off.";
    }
    return std::nullopt;
}

std::optional<std::string> RecordingHealth::refusal(std::optional<std::uintmax_t> diskSpace) {
    if (!diskSpace || *diskSpace >= leastDisk) {
        return std::nullopt;
    }
    const std::uintmax_t minutes = (std::max(*diskSpace, fullDisk) - fullDisk) / (bytesPerSecond * 60);
    std::string room = fmt::format("only {} minutes of recording fit", minutes);
    if (minutes == 0) {
        room = "not even a minute of recording fits";
    } else if (minutes == 1) {
        room = "only 1 minute of recording fits";
    }
    return fmt::format("The disk is almost full — {}. Make room for an hour first.", room);
}

} // namespace varnic
